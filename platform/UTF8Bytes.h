// Bytes that are meant to be UTF-8, as UTF-16 units and back without loss: a byte that is not part of valid
// UTF-8 stands as the lone surrogate U+DC00 + byte (0xDC80 to 0xDCFF) among the units.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kr::platform {

[[nodiscard]] std::u16string utf16FromBytes(std::string_view bytes);

// The text that valid UTF-8 stands for; none where a byte is not part of it.
[[nodiscard]] std::optional<std::u16string> utf16FromUTF8(std::string_view bytes);

// The same into `room`, which has as many units as there are bytes. How many units it took; none where a byte
// is not part of valid UTF-8, and then what stands in `room` has no meaning.
[[nodiscard]] std::optional<std::size_t> decodeUTF8(std::string_view bytes, char16_t* room);

// Lone surrogates from 0xDC80 to 0xDCFF become their byte again; any other lone surrogate becomes U+FFFD.
[[nodiscard]] std::string bytesFromUTF16(std::u16string_view units);

// The same bytes in parts, for texts of which nobody needs a second copy. Every character is within one part.
void forEachUTF8Part(std::u16string_view units, const std::function<void(std::string_view)>& call);

// The same text with U+FFFD in place of every lone surrogate.
[[nodiscard]] std::u16string withoutLoneSurrogates(std::u16string_view units);

}  // namespace kr::platform
