#include "platform/FileOperations.h"

#import <AppKit/AppKit.h>

#include <cerrno>

#include "platform/Paths.h"
#include "platform/SystemServices.h"
#import "platform/cocoa/Bridging.h"
#import "platform/macos/CocoaFailure.h"
#include "platform/posix/Files.h"

namespace kr::platform {
namespace {

class CocoaFileOperations final : public FileOperations {
 public:
  // The system's own copy clones where the file system can, and keeps attributes, access lists and resource
  // forks.
  std::optional<Failure> copyTree(const std::string& source, const std::string& destination) override {
    @autoreleasepool {
      // What stands there already is not ours to clear away after the failure.
      if (files::itemExists(destination))
        return Failure{"copy to", destination, {EEXIST, std::generic_category()}};
      NSError* error = nil;
      NSString* target = toNSString(destination);
      if ([[NSFileManager defaultManager] copyItemAtPath:toNSString(source) toPath:target error:&error]) {
        return std::nullopt;
      }
      Failure reason = macos::failure("copy", source, error);
      [[NSFileManager defaultManager] removeItemAtPath:target error:nullptr];
      return reason;
    }
  }

  std::optional<Failure> recycle(const std::string& path) override {
    @autoreleasepool {
      NSInteger tag = 0;
      const BOOL moved =
          [[NSWorkspace sharedWorkspace] performFileOperation:NSWorkspaceRecycleOperation
                                                       source:toNSString(paths::parent(path))
                                                  destination:@""
                                                        files:@[ toNSString(paths::lastComponent(path)) ]
                                                          tag:&tag];
      if (moved) return std::nullopt;
      return Failure{"move to the Trash", path, {}};  // the workspace gives no reason
    }
  }

  std::optional<Failure> removeTree(const std::string& path) override {
    @autoreleasepool {
      NSError* error = nil;
      if ([[NSFileManager defaultManager] removeItemAtPath:toNSString(path) error:&error])
        return std::nullopt;
      return macos::failure("delete", path, error);
    }
  }

  bool isWritable(const std::string& path) override {
    @autoreleasepool {
      return [[NSFileManager defaultManager] isWritableFileAtPath:toNSString(path)] != NO;
    }
  }
};

}  // namespace

FileOperations& systemFileOperations() noexcept {
  static CocoaFileOperations operations;
  return operations;
}

}  // namespace kr::platform
