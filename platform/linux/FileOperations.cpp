#include "platform/FileOperations.h"

#include <unistd.h>

#include "platform/SystemServices.h"
#include "platform/linux/Trash.h"
#include "platform/linux/copy/CopyTree.h"
#include "platform/linux/copy/RemoveTree.h"

namespace kr::platform {
namespace {

class LinuxFileOperations final : public FileOperations {
 public:
  std::optional<Failure> copyTree(const std::string& source, const std::string& destination) override {
    return copy::copyTree(source, destination);
  }

  std::optional<Failure> recycle(const std::string& path) override { return moveToTrash(path); }

  std::optional<Failure> removeTree(const std::string& path) override { return copy::removeTree(path); }

  bool isWritable(const std::string& path) override { return ::access(path.c_str(), W_OK) == 0; }
};

}  // namespace

FileOperations& systemFileOperations() noexcept {
  static LinuxFileOperations& operations = *new LinuxFileOperations;
  return operations;
}

}  // namespace kr::platform
