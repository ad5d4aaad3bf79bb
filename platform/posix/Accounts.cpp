#include "platform/posix/Accounts.h"

#include <pwd.h>
#include <unistd.h>

#include <vector>

namespace kr::posix {
namespace {

constexpr std::size_t kEntrySize = 1 << 14;

}  // namespace

std::optional<std::string> homeOf(const std::string& user) {
  passwd entry{};
  passwd* found = nullptr;
  std::vector<char> buffer(kEntrySize);
  if (::getpwnam_r(user.c_str(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) {
    return std::nullopt;
  }
  return std::string(found->pw_dir);
}

std::optional<std::string> ownUserName() {
  passwd entry{};
  passwd* found = nullptr;
  std::vector<char> buffer(kEntrySize);
  if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) {
    return std::nullopt;
  }
  return std::string(found->pw_name);
}

}  // namespace kr::posix
