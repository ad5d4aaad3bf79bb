// Copying with nothing but what POSIX has, but for the contents of files: for systems without a copy engine
// of their own. Any thread.
#pragma once

#include <optional>
#include <string>
#include <system_error>

#include "platform/replace/FileSystem.h"

namespace kr::platform::replace {

// What of a copy POSIX has no call for. Descriptors are open; what answers bool leaves the reason in errno.
class Contents {
 public:
  virtual ~Contents() = default;

  // Makes the new file of that name in the folder one that shares the blocks of the source, with its extended
  // attributes. False where that cannot be: it is then copied.
  [[nodiscard]] virtual bool clone(int source, int folder, const std::string& name) noexcept = 0;

  // Contents and extended attributes of a file.
  [[nodiscard]] virtual bool copyFile(int source, int copy) noexcept = 0;

  // Extended attributes of a folder.
  [[nodiscard]] virtual bool copyAttributes(int source, int copy) noexcept = 0;

  // Takes from the new item what it has got from elsewhere and keeps it from being changed; the step that
  // failed.
  struct Problem {
    const char* step;
    std::error_code error;
  };
  [[nodiscard]] virtual std::optional<Problem> unprotect(int copy) noexcept = 0;
};

// What copyEntry() promises. Files of several names become files of their own.
[[nodiscard]] std::optional<Failure> copyTree(const Entry& source, const Entry& destination,
                                              Contents& contents);

}  // namespace kr::platform::replace
