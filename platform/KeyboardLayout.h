// The text that keys produce in the user's current keyboard layout. Main thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kr::platform {

// Which modifiers are held down, in the bits of a keyboard event of Carbon.
inline constexpr std::uint32_t kCommandKey = 1;
inline constexpr std::uint32_t kShiftKey = 2;
inline constexpr std::uint32_t kCapsLockKey = 4;
inline constexpr std::uint32_t kOptionKey = 8;
inline constexpr std::uint32_t kControlKey = 16;

// What the key with this virtual key code of the Mac (which names a place on the keyboard) is labelled with,
// at most four units; empty for a key that has no text, none where that cannot be told. A key that only puts
// an accent on the next character gives the accent.
[[nodiscard]] std::optional<std::u16string> textOfKey(std::uint16_t keyCode, std::uint32_t modifiers);

}  // namespace kr::platform
