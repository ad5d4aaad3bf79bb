// The hidden folder beside a destination in which a copy is built before it takes the destination's name. Its
// owner holds a lock on it; one without a lock was left behind by a program that has been killed, and the
// next copy into the same folder clears it away.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/posix/FileDescriptor.h"

namespace kr::platform::copy {

// Names of staging folders are this and sixteen hexadecimal digits, whatever the product is called.
inline constexpr std::string_view kStagingPrefix = ".velmora-install-";

class Staging {
 public:
  Staging() = default;
  ~Staging();
  Staging(const Staging&) = delete;
  Staging& operator=(const Staging&) = delete;

  // Makes a new, empty, locked folder in the open folder, which must stay open for as long as this lives.
  [[nodiscard]] std::error_code create(int parent);

  // The staging folder itself, and a descriptor of one's own for it.
  [[nodiscard]] int folder() const noexcept { return folder_.get(); }
  [[nodiscard]] posix::FileDescriptor duplicate() const noexcept;

  // Gives the staging folder, or the item of that name in it, its final name in the parent, at which there
  // must be nothing. After success nothing of the staging folder is left.
  [[nodiscard]] std::error_code placeFolder(const std::string& name);
  [[nodiscard]] std::error_code placeItem(const std::string& item, const std::string& name);

 private:
  [[nodiscard]] std::error_code disinherit() const;
  void remove() noexcept;

  int parent_ = -1;
  std::string name_;  // empty while there is none
  posix::FileDescriptor folder_;
};

// Deletes what killed programs have left in the open folder. What is locked, what is another user's and what
// cannot be deleted stays.
void removeLeftovers(int parent);

}  // namespace kr::platform::copy
