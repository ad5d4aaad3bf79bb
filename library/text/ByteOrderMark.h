// The marks that Unicode texts begin with. Any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace kr {

enum class UnicodeForm { utf8, utf16BigEndian, utf16LittleEndian, utf32BigEndian, utf32LittleEndian };

struct ByteOrderMark {
  UnicodeForm form;
  std::size_t length;  // in bytes

  friend bool operator==(const ByteOrderMark&, const ByteOrderMark&) = default;
};

// The mark at the start of a file, of which the first four bytes are enough; none where there is none. FF FE
// is that of UTF-32 when two zero bytes follow.
[[nodiscard]] std::optional<ByteOrderMark> byteOrderMark(std::string_view start);

}  // namespace kr
