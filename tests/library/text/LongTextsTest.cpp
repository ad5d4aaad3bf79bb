// Every rule on a text of a hundred megabytes, which is fifty million units. What takes time that grows
// faster than the text would not end here. Times are of the processor, so that a busy machine is no slow one.
#include <gtest/gtest.h>
#include <time.h>

#include "library/text/CodePoints.h"
#include "library/text/Escapes.h"
#include "library/text/Lines.h"
#include "library/text/NumericOrder.h"
#include "library/text/PercentEscapes.h"
#include "library/text/Whitespace.h"
#include "library/text/Wildcards.h"
#include "library/text/XMLElement.h"
#include "platform/Digest.h"
#include "platform/UTF8Bytes.h"

namespace kr {
namespace {

constexpr std::size_t kUnits = 50'000'000;
constexpr double kMostSeconds =
    20;  // ten times what the slowest takes, without optimisation or with a sanitizer too

double processorSeconds() {
  timespec time{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

// One piece, again and again.
std::u16string longText(std::u16string_view piece) {
  return repeated(piece, static_cast<long>(kUnits / piece.size()));
}

class LongTexts : public ::testing::Test {
 protected:
  ~LongTexts() override { EXPECT_LT(processorSeconds() - start_, kMostSeconds); }

 private:
  double start_ = processorSeconds();
};

TEST_F(LongTexts, AreEscapedAndExpanded) {
  const std::u16string text = longText(u"a\\nbc d\\");
  const auto expanded = withControlEscapesExpanded(text, true);
  ASSERT_TRUE(expanded);
  EXPECT_EQ(expanded->size(), text.size() / 8 * 7);
  const auto escapedText = escaped(*expanded, kEscapeCharacters);
  ASSERT_TRUE(escapedText);
  EXPECT_GT(escapedText->size(), expanded->size());
  EXPECT_TRUE(withEscapesExpanded(*escapedText, kEscapeCharacters));
}

TEST_F(LongTexts, GetPercentEscapesAndLoseThem) {
  const std::u16string text = longText(u"path with é/");
  const auto there = withPercentEscapes(text);
  ASSERT_TRUE(there);
  EXPECT_EQ(there->size(), text.size() / 12 * 21);
  EXPECT_EQ(withPercentEscapesExpanded(*there), text);
}

TEST_F(LongTexts, AreSplitAndTrimmed) {
  std::u16string text = longText(u" twelve of\r\n");
  EXPECT_EQ(lines(text).size(), text.size() / 12 + 1);
  EXPECT_EQ(pieces(text, u' ').size(), text.size() / 12 * 2 + 1);
  const auto replaced = withLineSeparator(text, u"\n");
  ASSERT_TRUE(replaced);
  EXPECT_EQ(replaced->size(), text.size() / 12 * 11);
  EXPECT_EQ(trimmed(text)->size(), text.size() - 3);
  EXPECT_EQ(asSingleLine(text)->size(), text.size() - 3);
  EXPECT_EQ(trimmed(longText(u" \t"))->size(), 0U);
}

TEST_F(LongTexts, AreCountedAndListed) {
  const std::u16string text = longText(u"a😀");
  EXPECT_EQ(numberOfCodePoints(text), text.size() / 3 * 2);
  EXPECT_EQ(utf32Sequence(std::u16string_view(text).substr(0, text.size() / 10)).size(),
            text.size() / 30 * 11 + 4);
}

TEST_F(LongTexts, AreComparedAndMatched) {
  const std::u16string text = longText(u"x1y");
  EXPECT_EQ(numericOrder(text + u"9", text + u"10"), std::strong_ordering::less);
  EXPECT_EQ(caseInsensitiveNumericOrder(text + u"X", text + u"x"), std::strong_ordering::equal);
  const std::u16string digits = longText(u"7");
  EXPECT_EQ(numericOrder(digits + u"1", digits + u"2"), std::strong_ordering::less);
  EXPECT_EQ(numericOrder(u"0" + digits, digits), std::strong_ordering::equal);
  EXPECT_TRUE(matchesWildcards(text, u"x*1yx*1y"));
  EXPECT_FALSE(matchesWildcards(text, u"*yy*"));
  EXPECT_EQ(xmlElement(u"<k>" + text + u"</k>", u"k")->size(), text.size());
}

TEST_F(LongTexts, AreEncodedAndDigested) {
  const std::u16string text = longText(u"aé日😀");
  const std::string bytes = platform::bytesFromUTF16(text);
  EXPECT_EQ(bytes.size(), text.size() / 5 * 10);
  EXPECT_EQ(platform::utf16FromUTF8(bytes), text);
  const auto inParts =
      platform::md5([&text](const platform::TakeBytes& take) { platform::forEachUTF8Part(text, take); });
  EXPECT_EQ(inParts, platform::md5(bytes));
}

}  // namespace
}  // namespace kr
