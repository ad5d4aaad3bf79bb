// Core Foundation's strings and locations as the texts of the C++ core. Any thread.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <optional>
#include <string>

namespace kr::macos {

// UTF-8; the empty text for null.
[[nodiscard]] std::string text(CFStringRef string);

// The path that a file URL stands for, without a slash at the end; none for null and for other URLs.
[[nodiscard]] std::optional<std::string> path(CFURLRef location);

}  // namespace kr::macos
