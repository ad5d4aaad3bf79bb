#include "library/text/Decoding.h"

#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <vector>

#include "platform/CharacterSets.h"
#include "tests/library/text/RandomTexts.h"

namespace kr {
namespace {

using namespace std::string_literals;
using platform::characterSetNamed;
using platform::decodedFrom;

TEST(ByteOrderMarks, AreToldByTheFirstFourBytes) {
  EXPECT_EQ(byteOrderMark("\xEF\xBB\xBF"s), (ByteOrderMark{UnicodeForm::utf8, 3}));
  EXPECT_EQ(byteOrderMark("\xFE\xFF\0a"s), (ByteOrderMark{UnicodeForm::utf16BigEndian, 2}));
  EXPECT_EQ(byteOrderMark("\xFF\xFE"
                          "a\0"s),
            (ByteOrderMark{UnicodeForm::utf16LittleEndian, 2}));
  EXPECT_EQ(byteOrderMark("\xFF\xFE\0a"s), (ByteOrderMark{UnicodeForm::utf16LittleEndian, 2}));
  EXPECT_EQ(byteOrderMark("\xFF\xFE\0\0abc"s), (ByteOrderMark{UnicodeForm::utf32LittleEndian, 4}));
  EXPECT_EQ(byteOrderMark("\0\0\xFE\xFF"s), (ByteOrderMark{UnicodeForm::utf32BigEndian, 4}));
}

TEST(ByteOrderMarks, MissingBytesAreZeros) {
  EXPECT_EQ(byteOrderMark("\xFF\xFE"s), (ByteOrderMark{UnicodeForm::utf32LittleEndian, 2}));
  EXPECT_EQ(byteOrderMark("\xFE\xFF"s), (ByteOrderMark{UnicodeForm::utf16BigEndian, 2}));
  EXPECT_EQ(byteOrderMark("\xEF\xBB"s), std::nullopt);
  EXPECT_EQ(byteOrderMark("\0\0\xFE"s), std::nullopt);
}

TEST(ByteOrderMarks, OtherBeginningsAreNone) {
  for (const std::string& start : {""s, "abcd"s, "\0\0\0\0"s, "\0\xFE\xFF\0"s, "\xEF\xBB\xBE"s, "\xFF"s}) {
    EXPECT_EQ(byteOrderMark(start), std::nullopt);
  }
}

TEST(Decoding, OneByteEncodings) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  EXPECT_EQ(decodedLatin1(bytes), decodedFrom("ISO-8859-1", bytes));
  // Of the two characters that Apple has changed since, one is the euro sign.
  const std::u16string macRoman = decodedMacRoman(bytes);
  EXPECT_EQ(macRoman, decodedFrom("macos-0_2-10.2", bytes));
  EXPECT_EQ(macRoman[0xDB], u'€');
  EXPECT_EQ(macRoman[0x8E], u'é');
  EXPECT_EQ(decodedLatin1(""), u"");
  EXPECT_EQ(decodedMacRoman(""), u"");
}

TEST(Decoding, UTF16IsBigEndianWithoutAMark) {
  EXPECT_EQ(decodedUTF16("\0a\x20\xAC"s), u"a€");
  EXPECT_EQ(decodedUTF16("\xFE\xFF\0a"s), u"a");
  EXPECT_EQ(decodedUTF16("\xFF\xFE"
                         "a\0"s),
            u"a");
  EXPECT_EQ(decodedUTF16("\0a\0"s), u"a") << "half a unit is left out";
  EXPECT_EQ(decodedUTF16("\xD8\x00"s), std::u16string{0xD800});
  EXPECT_EQ(decodedUTF16(""), u"");
}

TEST(Decoding, UnicodeFormsAgreeWithICU) {
  struct Form {
    UnicodeForm form;
    const char* name;
  };
  const std::vector<Form> forms{{UnicodeForm::utf8, "UTF-8"},
                                {UnicodeForm::utf16BigEndian, "UTF-16BE"},
                                {UnicodeForm::utf16LittleEndian, "UTF-16LE"},
                                {UnicodeForm::utf32BigEndian, "UTF-32BE"},
                                {UnicodeForm::utf32LittleEndian, "UTF-32LE"}};
  const std::u16string text = u"aé€\uFEFF😀\U0010FFFF\0z";
  for (const Form& form : forms) {
    UErrorCode error = U_ZERO_ERROR;
    UConverter* converter = ::ucnv_open(form.name, &error);
    std::string bytes(200, '\0');
    bytes.resize(static_cast<std::size_t>(::ucnv_fromUChars(converter, bytes.data(), 200, text.data(),
                                                            static_cast<std::int32_t>(text.size()), &error)));
    ::ucnv_close(converter);
    EXPECT_EQ(decodedUnicode(form.form, bytes), text) << form.name;
  }
}

TEST(Decoding, RandomBytesAreDecodedAsICUDecodesThemOrNotAtAll) {
  testing::RandomTexts random(11);
  for (int round = 0; round < 20000; ++round) {
    std::string bytes;
    for (const char16_t unit : random.any(4)) {
      bytes += static_cast<char>(unit >> 8U);
      bytes += static_cast<char>(unit & 0xFFU);
    }
    if (round % 3 == 0) bytes.insert(0, "\0\0\0"s.substr(random.number(4)));
    ASSERT_EQ(decodedUnicode(UnicodeForm::utf8, bytes), decodedFrom("UTF-8", bytes));
    ASSERT_EQ(decodedUnicode(UnicodeForm::utf32BigEndian, bytes), decodedFrom("UTF-32BE", bytes));
    ASSERT_EQ(decodedUnicode(UnicodeForm::utf32LittleEndian, bytes), decodedFrom("UTF-32LE", bytes));
  }
}

TEST(Decoding, MalformedUTF32IsNone) {
  for (const std::string& bytes :
       {"\0\0\0"s, "\0\x11\0\0"s, "\0\0\xD8\0"s, "\0\0\0a\0"s, "\xFF\xFF\xFF\xFF"s}) {
    EXPECT_EQ(decodedUnicode(UnicodeForm::utf32BigEndian, bytes), std::nullopt);
  }
  EXPECT_EQ(decodedUnicode(UnicodeForm::utf32BigEndian, ""), u"");
}

TEST(CharacterSets, AreKnownByAllTheirNames) {
  for (const char* name : {"ISO-8859-1", "latin1", "LATIN1", "l1", "iso_8859-1", "cp819", "ISO8859-1"}) {
    EXPECT_EQ(characterSetNamed(name), "ISO-8859-1") << name;
  }
  EXPECT_EQ(characterSetNamed("utf8"), "UTF-8");
  EXPECT_EQ(characterSetNamed("UTF-8"), "UTF-8");
  EXPECT_EQ(characterSetNamed("shift_jis"), "Shift_JIS");
  EXPECT_EQ(characterSetNamed("windows-1252"), "windows-1252");
  for (const char* name : {"", "no-such-set", "utf-9", "-"})
    EXPECT_EQ(characterSetNamed(name), std::nullopt) << name;
}

TEST(CharacterSets, DecodeStrictly) {
  EXPECT_EQ(decodedFrom("windows-1252", "\x80\x93x\x94"), u"€“x”");
  EXPECT_EQ(decodedFrom("shift_jis", "\x93\xFA\x96\x7B"), u"日本");
  EXPECT_EQ(decodedFrom("koi8-r", "\xF0\xF2"), u"ПР");
  EXPECT_EQ(decodedFrom("gb18030", "\x94\x39\xFC\x36"), u"😀");
  EXPECT_EQ(decodedFrom("us-ascii", "a\x80"), std::nullopt);
  EXPECT_EQ(decodedFrom("shift_jis", "\x93"), std::nullopt) << "ends within a character";
  EXPECT_EQ(decodedFrom("euc-jp", "\xFF"), std::nullopt);
  EXPECT_EQ(decodedFrom("no-such-set", "a"), std::nullopt);
  EXPECT_EQ(decodedFrom("", "a"), std::nullopt);
  EXPECT_EQ(decodedFrom("shift_jis", ""), u"");
  // More than fits the first room for it.
  std::string many;
  for (int count = 0; count < 1000; ++count) many += "\x94\x39\xFC\x36";
  EXPECT_EQ(decodedFrom("gb18030", many)->size(), 2000U);
}

}  // namespace
}  // namespace kr
