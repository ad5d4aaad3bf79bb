// Numbers and truth values that texts begin with. ASCII digits only, whatever the language. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace kr {

// As C reads an integer whose base its prefix tells: "0x1F" is hexadecimal, "017" octal. What follows the
// number does not count; without one it is 0; what does not fit is the nearest number that does.
[[nodiscard]] long numericValue(std::u16string_view text);

// True when the first character is one of "TtYy1", else whether the decimal number at the start (after blanks
// and a sign) is another one than 0.
[[nodiscard]] bool booleanValue(std::u16string_view text);

// Whether the text is not empty and digits only, without a sign.
[[nodiscard]] bool isIntegerNumber(std::u16string_view text);

// The text with "." as its decimal separator and no other one. Of "," and "." the one that comes later is the
// decimal separator, told by the first of each; the other one is removed. A text with "," only has it turned
// into ".".
[[nodiscard]] std::u16string withDecimalPoint(std::u16string_view text);

// The decimal number at the start of withDecimalPoint(text); 0 without one.
[[nodiscard]] float smartFloatValue(std::u16string_view text);

}  // namespace kr
