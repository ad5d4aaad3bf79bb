#include "platform/Letters.h"

#include <gtest/gtest.h>

#include <string>

namespace kr::platform {
namespace {

void expectLetter(std::u16string_view text, std::size_t location, std::size_t length) {
  const LetterRange found = firstLetter(text);
  EXPECT_EQ(found.location, location);
  EXPECT_EQ(found.length, length);
}

TEST(FirstLetter, IsFoundInEveryScript) {
  expectLetter(u"12b4", 2, 1);
  expectLetter(u"Z", 0, 1);
  expectLetter(u"1.2\u00E9", 3, 1);
  expectLetter(u"1.\u0431", 2, 1);
  expectLetter(u"1\u4E00a", 1, 1);
}

TEST(FirstLetter, MayTakeTwoUnits) {
  expectLetter(u"1.2\U0001D4003", 3, 2);
  expectLetter(u"\U0001F600x", 2, 1);
}

TEST(FirstLetter, IsNoDigitNoSignAndNoHalfCharacter) {
  expectLetter(u"", 0, 0);
  expectLetter(u"0123456789 .-:@[`{_/", 0, 0);
  expectLetter(u"\u0661\uFFFD", 0, 0);
  for (const char16_t half : {u'\xD835', u'\xDC00', u'\xDC80'}) expectLetter(std::u16string(2, half), 0, 0);
  expectLetter(std::u16string{u'\xD835', u'b'}, 1, 1);
}

}  // namespace
}  // namespace kr::platform
