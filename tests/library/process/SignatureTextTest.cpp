#include "library/process/SignatureText.h"

#include <gtest/gtest.h>

namespace kr {
namespace {

TEST(SignatureText, FourCharactersAreTheBytesOfTheCodeHighestFirst) {
  EXPECT_EQ(signatureFromText("ABCD"), 0x41424344U);
  EXPECT_EQ(signatureFromText("????"), 0x3F3F3F3FU);
  EXPECT_EQ(signatureFromText("a b "), 0x61206220U);
}

TEST(SignatureText, OfALongerTextTheFirstFourCharactersCount) {
  EXPECT_EQ(signatureFromText("ABCDE"), 0x41424344U);
}

TEST(SignatureText, AShorterTextIsNoCode) {
  EXPECT_EQ(signatureFromText("ABC"), 0U);
  EXPECT_EQ(signatureFromText(""), 0U);
}

TEST(SignatureText, CharactersBeyondASCIIAreThoseOfMacRoman) {
  EXPECT_EQ(signatureFromText("\xC3\x84xxx"),
            0x80787878U);  // A with diaeresis is the first of the upper half
  EXPECT_EQ(signatureFromText("xxx\xE2\x82\xAC"), 0x787878DBU);  // the euro sign
  EXPECT_EQ(signatureFromText("xxx\xCB\x87"), 0x787878FFU);      // the caron is the last
}

TEST(SignatureText, ACharacterThatMacRomanLacksMakesItNoCode) {
  EXPECT_EQ(signatureFromText("ABC\xD0\x96"), 0U);          // Cyrillic
  EXPECT_EQ(signatureFromText("ABC\xF0\x9F\x98\x80"), 0U);  // outside the basic plane
  EXPECT_EQ(signatureFromText("ABC\xFF"), 0U);              // not UTF-8
}

TEST(SignatureText, EveryCodeOfOneByteComesBackFromItsText) {
  for (std::uint32_t byte = 0; byte < 0x100; ++byte) {
    const std::uint32_t code = byte << 24U | 0x414243U;
    EXPECT_EQ(signatureFromText(textFromSignature(code)), code) << byte;
  }
}

TEST(SignatureText, TheTextOfACodeHasFourCharacters) {
  EXPECT_EQ(textFromSignature(0x41424344), "ABCD");
  EXPECT_EQ(textFromSignature(0x8042437F),
            "\xC3\x84"
            "BC\x7F");
  EXPECT_EQ(textFromSignature(0), std::string(4, '\0'));
}

TEST(SignatureText, HexDigitsWidenHighBytesWithTheirSign) {
  EXPECT_EQ(hexTextFromSignature(0), "00000000");
  EXPECT_EQ(hexTextFromSignature(0x41424344), "41424344");
  EXPECT_EQ(hexTextFromSignature(0x41FF4243), "41FFFFFFFF4243");
  EXPECT_EQ(hexTextFromSignature(0x80000000), "FFFFFF80000000");
  EXPECT_EQ(hexTextFromSignature(0xFFFFFFFF), "FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF");
  EXPECT_EQ(hexTextFromSignature(0x0A7F0B0C), "0A7F0B0C");
}

}  // namespace
}  // namespace kr
