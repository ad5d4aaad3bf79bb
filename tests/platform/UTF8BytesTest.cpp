#include "platform/UTF8Bytes.h"

#include <gtest/gtest.h>

#include <random>

namespace kr::platform {
namespace {

TEST(UTF8Bytes, ValidTextIsDecoded) {
  EXPECT_EQ(utf16FromBytes("aé€😀"), u"aé€😀");
  EXPECT_EQ(bytesFromUTF16(u"aé€😀"), "aé€😀");
  EXPECT_EQ(utf16FromBytes(""), u"");
}

TEST(UTF8Bytes, BytesThatAreNoUTF8BecomeLoneSurrogatesAndComeBack) {
  EXPECT_EQ(utf16FromBytes("a\xFF"), (std::u16string{u'a', 0xDCFF}));
  for (const std::string bytes : {"\x80", "\xC3", "\xC0\x80", "\xE2\x82", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                                  "\xF8\x88", "x\xC3(\xE2\x28\xA1"}) {
    EXPECT_EQ(bytesFromUTF16(utf16FromBytes(bytes)), bytes);
  }
}

TEST(UTF8Bytes, LoneSurrogatesThatStandForNoByteAreReplaced) {
  EXPECT_EQ(bytesFromUTF16(std::u16string{0xD800}), "\xEF\xBF\xBD");
  EXPECT_EQ(bytesFromUTF16(std::u16string{0xDC00, u'a'}),
            "\xEF\xBF\xBD"
            "a");
}

TEST(UTF8Bytes, TextToShowHasNoLoneSurrogates) {
  EXPECT_EQ(withoutLoneSurrogates(std::u16string{u'a', 0xDCFF, 0xD800, u'b', 0xD83D, 0xDE00, 0xD83D}),
            (std::u16string{u'a', 0xFFFD, 0xFFFD, u'b', 0xD83D, 0xDE00, 0xFFFD}));
}

TEST(UTF8Bytes, AnyBytesSurviveTheRoundTrip) {
  std::mt19937 random(20);
  for (int round = 0; round < 2000; ++round) {
    std::string bytes(random() % 40, '\0');
    for (char& byte : bytes)
      byte = static_cast<char>(random() % (round % 2 == 0 ? 256 : 8) + (round % 2 == 0 ? 0 : 0xE0));
    ASSERT_EQ(bytesFromUTF16(utf16FromBytes(bytes)), bytes);
  }
}

TEST(UTF8Bytes, StrictDecodingTakesValidTextOnly) {
  EXPECT_EQ(utf16FromUTF8("aé€😀"), u"aé€😀");
  EXPECT_EQ(utf16FromUTF8(""), u"");
  for (const std::string bytes : {"\x80", "\xC3", "\xC0\x80", "\xE2\x82", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                                  "a\xFF", "x\xC3(\xE2\x28\xA1"}) {
    EXPECT_EQ(utf16FromUTF8(bytes), std::nullopt);
  }
}

// Blocks of ASCII go another way than characters one by one: every place of a change from one to the other.
TEST(UTF8Bytes, CharactersOfEveryLengthStandAtEveryPlace) {
  for (const std::u16string_view character : {u"a", u"é", u"€", u"😀", u"\U0010FFFF", u"\x7F", u"\x80"}) {
    for (std::size_t place = 0; place < 130; ++place) {
      const std::u16string text =
          std::u16string(place, u'x') + std::u16string(character) + std::u16string(130 - place, u'y');
      const std::string bytes = bytesFromUTF16(text);
      ASSERT_EQ(bytes, std::string(place, 'x') + bytesFromUTF16(character) + std::string(130 - place, 'y'));
      ASSERT_EQ(utf16FromUTF8(bytes), text);
      ASSERT_EQ(utf16FromBytes(bytes), text);
    }
  }
}

TEST(UTF8Bytes, PartsHoldWholeCharacters) {
  std::mt19937 random(21);
  for (const std::size_t shift : {0U, 1U}) {
    std::u16string text(shift, u'x');
    while (text.size() < 20000) text += random() % 4 == 0 ? u"a" : u"😀";
    std::string joined;
    forEachUTF8Part(text, [&joined](std::string_view part) {
      EXPECT_NE(utf16FromUTF8(part), std::nullopt);
      joined += part;
    });
    EXPECT_EQ(utf16FromUTF8(joined), text);
  }
}

}  // namespace
}  // namespace kr::platform
