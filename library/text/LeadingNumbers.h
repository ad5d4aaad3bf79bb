// The numbers that texts begin with, as Cocoa's strings read them: blanks and a sign may stand before the
// digits, and what follows does not count. Digits of ASCII and "." for the decimal separator, whatever the
// locale. Any thread.
#pragma once

#include <string_view>

namespace kr {

// 0 without digits; what does not fit in is the largest or smallest number.
[[nodiscard]] int leadingInteger(std::string_view text);

// With a fraction and an exponent, where there are any: " -1.5e3x" is -1500. 0 without digits; what is too
// large is the largest number of its sign.
[[nodiscard]] double leadingDecimal(std::string_view text);

}  // namespace kr
