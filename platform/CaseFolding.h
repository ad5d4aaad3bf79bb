// Texts without regard to case, as the system compares them. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace kr::platform {

// The text in the form that texts are compared in where case does not count: two texts that differ in case
// only have the same one. Independent of the language. It may be longer than the text.
[[nodiscard]] std::u16string foldedCase(std::u16string_view text);

}  // namespace kr::platform
