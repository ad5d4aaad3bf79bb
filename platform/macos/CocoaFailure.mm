#import "platform/macos/CocoaFailure.h"

#include <array>
#include <cerrno>

#import "platform/cocoa/Bridging.h"

namespace kr::macos {
namespace {

struct Meaning {
  NSInteger code;
  int error;
};
constexpr std::array<Meaning, 9> kMeanings{{{NSFileNoSuchFileError, ENOENT},
                                            {NSFileReadNoSuchFileError, ENOENT},
                                            {NSFileReadNoPermissionError, EACCES},
                                            {NSFileWriteNoPermissionError, EACCES},
                                            {NSFileWriteFileExistsError, EEXIST},
                                            {NSFileWriteOutOfSpaceError, ENOSPC},
                                            {NSFileWriteVolumeReadOnlyError, EROFS},
                                            {NSFileReadInvalidFileNameError, EINVAL},
                                            {NSFileWriteInvalidFileNameError, EINVAL}}};

int posixError(NSError* error) {
  for (NSError* cause = error; cause != nil; cause = [[cause userInfo] objectForKey:NSUnderlyingErrorKey]) {
    if ([[cause domain] isEqualToString:NSPOSIXErrorDomain]) return static_cast<int>([cause code]);
  }
  if ([[error domain] isEqualToString:NSCocoaErrorDomain]) {
    for (const Meaning& meaning : kMeanings) {
      if (meaning.code == [error code]) return meaning.error;
    }
  }
  return EIO;
}

}  // namespace

platform::Failure failure(std::string step, const std::string& path, NSError* error) {
  NSString* where = [[error userInfo] objectForKey:NSFilePathErrorKey];
  return {.step = std::move(step),
          .path = where != nil ? toBytes(where) : path,
          .error = {posixError(error), std::generic_category()}};
}

}  // namespace kr::macos
