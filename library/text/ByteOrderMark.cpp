#include "library/text/ByteOrderMark.h"

#include <algorithm>
#include <array>

namespace kr {
namespace {

using namespace std::string_view_literals;

struct Mark {
  std::string_view bytes;
  UnicodeForm form;
};

// Bytes that are missing count as zeros, so a file of FF FE alone has the third one.
constexpr std::array<Mark, 5> kMarks{{{"\xEF\xBB\xBF"sv, UnicodeForm::utf8},
                                      {"\xFE\xFF"sv, UnicodeForm::utf16BigEndian},
                                      {"\xFF\xFE\0\0"sv, UnicodeForm::utf32LittleEndian},
                                      {"\xFF\xFE"sv, UnicodeForm::utf16LittleEndian},
                                      {"\0\0\xFE\xFF"sv, UnicodeForm::utf32BigEndian}}};

}  // namespace

std::optional<ByteOrderMark> byteOrderMark(std::string_view start) {
  std::array<char, 4> bytes{};
  start.copy(bytes.data(), bytes.size());
  const std::string_view beginning(bytes.data(), bytes.size());
  for (const Mark& mark : kMarks) {
    if (beginning.starts_with(mark.bytes))
      return ByteOrderMark{mark.form, std::min(mark.bytes.size(), start.size())};
  }
  return std::nullopt;
}

}  // namespace kr
