// Contents by copyfile(3), or as a clone.
#include <copyfile.h>
#include <sys/clonefile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/LastError.h"
#include "platform/replace/TreeCopy.h"

namespace kr::platform::replace {
namespace {

class CopyFile final : public Contents {
 public:
  bool clone(int source, int folder, const std::string& name) noexcept override {
    return ::fclonefileat(source, folder, name.c_str(), CLONE_NOFOLLOW | CLONE_NOOWNERCOPY) == 0;
  }

  bool copyFile(int source, int copy) noexcept override {
    return ::fcopyfile(source, copy, nullptr, COPYFILE_DATA | COPYFILE_XATTR) == 0;
  }

  bool copyAttributes(int source, int copy) noexcept override {
    return ::fcopyfile(source, copy, nullptr, COPYFILE_XATTR) == 0;
  }

  // A clone has the access list and the flags of its source, and some of the flags keep everything else from
  // being changed.
  std::optional<Problem> unprotect(int copy) noexcept override {
    if (::fchflags(copy, 0) != 0 && errno != ENOTSUP) return Problem{"set flags of", posix::lastError()};
    if (const std::error_code error = removeInheritedAccessLists(copy)) {
      return Problem{"take the access list from", error};
    }
    return std::nullopt;
  }
};

}  // namespace

std::optional<Failure> copyEntry(const Entry& source, const Entry& destination) {
  CopyFile contents;
  return copyTree(source, destination, contents);
}

}  // namespace kr::platform::replace
