#include "platform/macos/ResourceFork.h"

#include <mutex>

namespace kr::macos {
namespace {

constexpr ResType kVersionType = 'vers';
constexpr ResID kVersionID = 1;

// The opened file becomes the current one, which Get1Resource() searches.
class ResourceFile {
 public:
  explicit ResourceFile(const FSRef& file) noexcept : number_(FSOpenResFile(&file, fsRdPerm)) {}
  ~ResourceFile() {
    if (number_ != kResFileNotOpened) CloseResFile(number_);
  }
  ResourceFile(const ResourceFile&) = delete;
  ResourceFile& operator=(const ResourceFile&) = delete;

  [[nodiscard]] bool isOpen() const noexcept { return number_ != kResFileNotOpened; }

 private:
  ResFileRefNum number_;
};

}  // namespace

std::optional<std::string> versionResource(const FSRef& file) {
  static std::mutex oneAtATime;  // the Resource Manager keeps one current file for all threads
  const std::lock_guard lock(oneAtATime);
  const ResourceFile resources(file);
  if (!resources.isOpen()) return std::nullopt;
  const Handle resource = Get1Resource(kVersionType, kVersionID);
  if (resource == nullptr) return std::nullopt;
  return std::string(*resource, static_cast<std::size_t>(GetHandleSize(resource)));
}

}  // namespace kr::macos
