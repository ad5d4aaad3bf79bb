#include "platform/CaseFolding.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <limits>

namespace kr::platform {
namespace {

// The longest text that one call takes: folding makes at most three units of one.
constexpr std::size_t kLongestPart = std::numeric_limits<std::int32_t>::max() / 3;

std::u16string foldedPart(std::u16string_view text) {
  std::u16string folded(text.size() + 16, u'\0');
  for (;;) {
    UErrorCode error = U_ZERO_ERROR;
    const std::int32_t length =
        ::u_strFoldCase(folded.data(), static_cast<std::int32_t>(folded.size()), text.data(),
                        static_cast<std::int32_t>(text.size()), U_FOLD_CASE_DEFAULT, &error);
    folded.resize(static_cast<std::size_t>(std::max(length, 0)));
    if (error != U_BUFFER_OVERFLOW_ERROR) return folded;
  }
}

}  // namespace

std::u16string foldedCase(std::u16string_view text) {
  if (text.size() <= kLongestPart) return foldedPart(text);
  std::u16string folded;
  for (std::size_t start = 0; start < text.size();) {
    std::size_t length = std::min(kLongestPart, text.size() - start);
    // Not between the surrogates of a pair.
    if (start + length < text.size() && (text[start + length] & 0xFC00) == 0xDC00) --length;
    folded += foldedPart(text.substr(start, length));
    start += length;
  }
  return folded;
}

}  // namespace kr::platform
