// Cocoa's errors as the failures of the core. Any thread.
#pragma once

#import <Foundation/Foundation.h>

#include <string>

#include "platform/Failure.h"

namespace kr::macos {

// The step that failed at the path. What the error says takes precedence: its own path, and the POSIX error
// under it or the one that its Cocoa code stands for; EIO for an error that is neither, or none at all.
[[nodiscard]] platform::Failure failure(std::string step, const std::string& path, NSError* error);

}  // namespace kr::macos
