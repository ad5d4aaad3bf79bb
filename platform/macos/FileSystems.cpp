#include "platform/FileSystems.h"

#include <CoreServices/CoreServices.h>
#include <sys/mount.h>

#include "platform/SystemServices.h"
#include "platform/macos/CFOwner.h"
#include "platform/macos/CFText.h"

namespace kr::platform {
namespace {

using macos::CFOwner;

class MountedVolumes final : public FileSystems {
 public:
  FileSystemType type(const std::string& path) override {
    struct statfs fileSystem {};
    const int status = ::statfs(path.c_str(), &fileSystem);
    return {.status = status, .name = status == 0 ? fileSystem.f_fstypename : ""};
  }

  std::optional<std::string> aliasTarget(const std::string& path) override {
    const CFOwner<CFURLRef> location(CFURLCreateFromFileSystemRepresentation(
        nullptr, reinterpret_cast<const UInt8*>(path.data()), static_cast<CFIndex>(path.size()), false));
    FSRef file{};
    if (!location || !CFURLGetFSRef(location.get(), &file)) return std::nullopt;
    Boolean isFolder = false;
    Boolean wasAlias = false;
    if (FSResolveAliasFile(&file, true, &isFolder, &wasAlias) != noErr || !wasAlias) return std::nullopt;
    return macos::path(CFOwner<CFURLRef>(CFURLCreateFromFSRef(nullptr, &file)).get());
  }

  std::vector<std::string> volumeFolders() override { return {"/Volumes"}; }
};

}  // namespace

FileSystems& systemFileSystems() noexcept {
  static MountedVolumes fileSystems;
  return fileSystems;
}

}  // namespace kr::platform
