// Text of unknown origin for a place that takes one line per event.
#pragma once

#include <string>
#include <string_view>

namespace kr::platform {

// The text with line breaks and other control characters written as escapes ("\n", "\x1b"), so that one event
// stays one line and no file name can forge another.
[[nodiscard]] std::string singleLine(std::string_view text);

}  // namespace kr::platform
