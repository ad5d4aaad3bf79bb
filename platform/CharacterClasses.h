// Which characters the system counts to a class of characters. Any code point may be asked for, surrogates
// included. Any thread.
#pragma once

namespace kr::platform {

// Control and format characters (general categories Cc and Cf).
[[nodiscard]] bool isControlCharacter(char32_t point);

// Letters, marks and numbers.
[[nodiscard]] bool isAlphanumeric(char32_t point);

// Noncharacters and code points that no character is assigned to.
[[nodiscard]] bool isIllegalCharacter(char32_t point);

// Spaces, the tab and line breaks: what the system's trimming removes.
[[nodiscard]] bool isSpaceOrLineBreak(char32_t point);

}  // namespace kr::platform
