// Core Foundation's strings and locations as the texts of the C++ core. Any thread.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <optional>
#include <string>
#include <string_view>

#include "platform/macos/CFOwner.h"

namespace kr::macos {

// UTF-8; the empty text for null.
[[nodiscard]] std::string text(CFStringRef string);

// UTF-16.
[[nodiscard]] std::u16string units(CFStringRef string);

// The string of bytes in UTF-8; null for bytes that are not.
[[nodiscard]] CFOwner<CFStringRef> string(std::string_view bytes);

// The path that a file URL stands for, without a slash at the end; none for null and for URLs of other
// schemes.
[[nodiscard]] std::optional<std::string> path(CFURLRef location);

}  // namespace kr::macos
