#include "platform/gnustep/VisualText.h"

#include <unicode/ubidi.h>
#include <unicode/uchar.h>
#include <unicode/ushape.h>
#include <unicode/utf16.h>

#include <memory>

namespace kr {
namespace {

struct CloseBidi {
  void operator()(UBiDi* bidi) const { ::ubidi_close(bidi); }
};

// Arabic letters in the forms in which they join, still in the order in which they are read.
std::u16string joined(std::u16string_view text) {
  std::u16string result(text.size(), u'\0');
  UErrorCode error = U_ZERO_ERROR;
  const std::int32_t length = ::u_shapeArabic(
      text.data(), static_cast<std::int32_t>(text.size()), result.data(),
      static_cast<std::int32_t>(result.size()),
      U_SHAPE_LETTERS_SHAPE | U_SHAPE_TEXT_DIRECTION_LOGICAL | U_SHAPE_LENGTH_GROW_SHRINK, &error);
  if (U_FAILURE(error) != 0) return std::u16string(text);
  result.resize(static_cast<std::size_t>(length));
  return result;
}

}  // namespace

bool hasRightToLeft(std::u16string_view text) {
  const auto length = static_cast<std::int32_t>(text.size());
  for (std::int32_t index = 0; index < length;) {
    UChar32 character = 0;
    U16_NEXT(text.data(), index, length, character);
    const UCharDirection direction = ::u_charDirection(character);
    if (direction == U_RIGHT_TO_LEFT || direction == U_RIGHT_TO_LEFT_ARABIC) return true;
  }
  return false;
}

std::u16string visualLine(std::u16string_view line, bool rightToLeft) {
  const std::u16string shaped = joined(line);
  const std::unique_ptr<UBiDi, CloseBidi> bidi(::ubidi_open());
  UErrorCode error = U_ZERO_ERROR;
  ::ubidi_setPara(bidi.get(), shaped.data(), static_cast<std::int32_t>(shaped.size()),
                  rightToLeft ? UBIDI_RTL : UBIDI_LTR, nullptr, &error);
  std::u16string result(shaped.size(), u'\0');
  const std::int32_t length =
      ::ubidi_writeReordered(bidi.get(), result.data(), static_cast<std::int32_t>(result.size()),
                             UBIDI_DO_MIRRORING | UBIDI_KEEP_BASE_COMBINING, &error);
  if (U_FAILURE(error) != 0) return std::u16string(line);
  result.resize(static_cast<std::size_t>(length));
  return result;
}

}  // namespace kr
