#include "platform/FileOperations.h"

#import <AppKit/AppKit.h>

#include <cerrno>
#include <utility>

#include "platform/Paths.h"
#include "platform/SystemServices.h"
#import "platform/macos/CocoaFailure.h"
#import "platform/macos/FileText.h"
#include "platform/posix/Files.h"

namespace kr::platform {
namespace {

Failure noName(std::string action, const std::string& path) {
  return {std::move(action), path, {EILSEQ, std::generic_category()}};
}

class CocoaFileOperations final : public FileOperations {
 public:
  // The system's own copy clones where the file system can, and keeps attributes, access lists and resource
  // forks.
  std::optional<Failure> copyTree(const std::string& source, const std::string& destination) override {
    @autoreleasepool {
      // What stands there already is not ours to clear away after the failure.
      if (files::itemExists(destination))
        return Failure{"copy to", destination, {EEXIST, std::generic_category()}};
      NSString* from = macos::exactPath(source);
      if (from == nil) return noName("copy", source);
      NSString* target = macos::exactPath(destination);
      if (target == nil) return noName("copy to", destination);
      NSError* error = nil;
      if ([[NSFileManager defaultManager] copyItemAtPath:from toPath:target error:&error]) {
        return std::nullopt;
      }
      Failure reason = macos::failure("copy", source, error);
      [[NSFileManager defaultManager] removeItemAtPath:target error:nullptr];
      return reason;
    }
  }

  std::optional<Failure> recycle(const std::string& path) override {
    @autoreleasepool {
      NSString* folder = macos::exactPath(paths::parent(path));
      NSString* name = macos::exactPath(paths::lastComponent(path));
      if (folder == nil || name == nil) return noName("move to the Trash", path);
      NSInteger tag = 0;
      const BOOL moved = [[NSWorkspace sharedWorkspace] performFileOperation:NSWorkspaceRecycleOperation
                                                                      source:folder
                                                                 destination:@""
                                                                       files:@[ name ]
                                                                         tag:&tag];
      if (moved) return std::nullopt;
      return Failure{"move to the Trash", path, {}};  // the workspace gives no reason
    }
  }

  std::optional<Failure> removeTree(const std::string& path) override {
    @autoreleasepool {
      NSString* item = macos::exactPath(path);
      if (item == nil) return noName("delete", path);
      NSError* error = nil;
      if ([[NSFileManager defaultManager] removeItemAtPath:item error:&error]) return std::nullopt;
      return macos::failure("delete", path, error);
    }
  }

  bool isWritable(const std::string& path) override {
    @autoreleasepool {
      return [[NSFileManager defaultManager] isWritableFileAtPath:macos::cocoaText(path)] != NO;
    }
  }
};

}  // namespace

FileOperations& systemFileOperations() noexcept {
  static CocoaFileOperations operations;
  return operations;
}

}  // namespace kr::platform
