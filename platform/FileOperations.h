// Operations on whole bundles and folders, as far as they are the platform's own. Paths are absolute,
// file-system bytes. Any thread.
#pragma once

#include <optional>
#include <string>

#include "platform/Failure.h"

namespace kr::platform {

class FileOperations {
 public:
  virtual ~FileOperations() = default;

  // Copies a file or a folder with all that is in it to a path at which nothing exists yet. The destination's
  // parent folder must exist. Links are copied as links. After a failure nothing is left at the destination.
  [[nodiscard]] virtual std::optional<Failure> copyTree(const std::string& source,
                                                        const std::string& destination) = 0;

  // Moves the item to the user's Trash, from which a file manager can restore it.
  [[nodiscard]] virtual std::optional<Failure> recycle(const std::string& path) = 0;

  // Deletes a file, a link or a folder with all that is in it. Links are deleted, not followed.
  [[nodiscard]] virtual std::optional<Failure> removeTree(const std::string& path) = 0;

  // Whether the user may write the file or folder at the path; false when there is none.
  [[nodiscard]] virtual bool isWritable(const std::string& path) = 0;
};

}  // namespace kr::platform
