#include "library/text/VirtualCharacters.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <optional>
#include <set>
#include <sstream>

#include "library/text/CodePoints.h"

namespace kr {
namespace {

constexpr char32_t kFirstJoined = 0xA0300;

std::vector<std::uint32_t> sequence(char32_t value) {
  std::vector<std::uint32_t> points;
  const std::uint32_t* next = codePointsOfVirtualCharacter(value);
  EXPECT_NE(next, nullptr);
  while (next != nullptr && *next != 0) points.push_back(*next++);
  return points;
}

// Unicode's list of joined emoji: the emoji version of each sequence.
std::map<std::vector<std::uint32_t>, double> unicodeSequences() {
  std::map<std::vector<std::uint32_t>, double> versions;
  std::ifstream file(KR_EMOJI_DATA "/emoji-zwj-sequences.txt");
  for (std::string line; std::getline(file, line);) {
    const std::size_t end = line.find(';');
    const std::size_t comment = line.find('#');
    if (comment == 0 || end == std::string::npos || comment == std::string::npos) continue;
    std::istringstream points(line.substr(0, end));
    std::vector<std::uint32_t> list;
    for (std::uint32_t point = 0; points >> std::hex >> point;) list.push_back(point);
    versions[list] = std::stod(line.substr(line.find('E', comment) + 1));
  }
  return versions;
}

TEST(VirtualCharacters, LieInFourRanges) {
  std::vector<std::pair<char32_t, char32_t>> ranges;
  for (char32_t value = 0; value <= 0x110000; ++value) {
    if (!isVirtualCharacter(value)) continue;
    if (ranges.empty() || ranges.back().second + 1 != value) ranges.emplace_back(value, value);
    ranges.back().second = value;
  }
  const std::vector<std::pair<char32_t, char32_t>> expected{
      {0xA0000, 0xA02A3}, {0xA0300, 0xA03B4}, {0xA1000, 0xA100B}, {0xB0000, 0xBFFFE}};
  EXPECT_EQ(ranges, expected);
}

TEST(VirtualCharacters, FlagsAreTwoRegionalIndicators) {
  EXPECT_EQ(textOfCharacter(0xA0000), u"🇦🇦");
  EXPECT_EQ(textOfCharacter(0xA0000 + 26 * 3 + 4), u"🇩🇪");
  EXPECT_EQ(textOfCharacter(0xA02A3), u"🇿🇿");
  EXPECT_EQ(sequence(0xA0000 + 26 * 20 + 18), (std::vector<std::uint32_t>{0x1F1FA, 0x1F1F8}));
}

TEST(VirtualCharacters, TheCodePointsOfAFlagStayUntilTheNextFlag) {
  const std::uint32_t* first = codePointsOfVirtualCharacter(0xA0000);
  EXPECT_NE(codePointsOfVirtualCharacter(kFirstJoined), first);
  EXPECT_EQ(first[0], 0x1F1E6U);
  const std::uint32_t* second = codePointsOfVirtualCharacter(0xA02A3);
  EXPECT_EQ(second, first);
  EXPECT_EQ(first[0], 0x1F1FFU);
  EXPECT_EQ(first[2], 0U);
}

TEST(VirtualCharacters, KeycapsAreACharacterInAKeycap) {
  const std::u16string_view characters = u"#*0123456789";
  for (std::size_t index = 0; index < characters.size(); ++index) {
    const auto value = static_cast<char32_t>(0xA1000 + index);
    EXPECT_EQ(textOfCharacter(value), (std::u16string{characters[index], 0x20E3}));
    EXPECT_EQ(codePointsOfVirtualCharacter(value), KEYCAP_SEQUENCES[index].data());
  }
  EXPECT_EQ(N_KEYCAP_SEQUENCES, 12U);
}

TEST(VirtualCharacters, JoinedEmojiAreTheRowsOfTheTable) {
  EXPECT_EQ(textOfCharacter(kFirstJoined), u"\U0001F441\uFE0F\u200D\U0001F5E8\uFE0F");
  for (std::size_t row = 0; row < N_ZWJ_SEQUENCES; ++row) {
    EXPECT_EQ(codePointsOfVirtualCharacter(static_cast<char32_t>(kFirstJoined + row)),
              ZWJ_SEQUENCES[row].data());
  }
}

TEST(ZWJSequences, AreJoinedEmojiOfUnicode) {
  const std::map<std::vector<std::uint32_t>, double> versions = unicodeSequences();
  ASSERT_GT(versions.size(), 1000U) << "in " << KR_EMOJI_DATA;
  std::set<std::vector<std::uint32_t>> seen;
  double last = 0;
  for (std::size_t row = 0; row < N_ZWJ_SEQUENCES; ++row) {
    ASSERT_EQ(ZWJ_SEQUENCES[row].back(), 0U) << "row " << row << " is ended by a zero";
    const std::vector<std::uint32_t> points = sequence(static_cast<char32_t>(kFirstJoined + row));
    const auto found = versions.find(points);
    ASSERT_NE(found, versions.end()) << "row " << row;
    EXPECT_TRUE(seen.insert(points).second) << "row " << row << " is there already";
    EXPECT_GE(found->second, last) << "older emoji come first, row " << row;
    last = found->second;
    EXPECT_TRUE(std::none_of(points.begin(), points.end(),
                             [](std::uint32_t point) { return point >= 0x1F3FB && point <= 0x1F3FF; }))
        << "row " << row << " has a skin tone";
    EXPECT_NE(std::find(points.begin(), points.end(), 0x200DU), points.end());
  }
}

TEST(VirtualCharacters, OthersHaveNoSequence) {
  defineLigatures({u"ffi"});
  for (const char32_t value :
       {0x41U, 0x1F600U, 0x9FFFFU, 0xA02A4U, 0xA02FFU, 0xA03B5U, 0xA0FFFU, 0xA100CU, 0xB0000U}) {
    EXPECT_EQ(codePointsOfVirtualCharacter(value), nullptr) << std::uint32_t{value};
  }
}

TEST(TextOfCharacter, IsADefinedLigature) {
  defineLigatures({u"ffi", u"", u"\U0001F600x"});
  EXPECT_EQ(textOfCharacter(0xB0000), u"ffi");
  EXPECT_EQ(textOfCharacter(0xB0001), u"");
  EXPECT_EQ(textOfCharacter(0xB0002), u"\U0001F600x");
  EXPECT_EQ(textOfCharacter(0xB0003), u"\U000B0003");
  defineLigatures({});
  EXPECT_EQ(textOfCharacter(0xB0000), u"\U000B0000");
}

TEST(TextOfCharacter, IsElseTheUnitsOfTheCodePoint) {
  EXPECT_EQ(textOfCharacter(U'a'), u"a");
  EXPECT_EQ(textOfCharacter(0), std::u16string(1, u'\0'));
  EXPECT_EQ(textOfCharacter(0xFFFF), std::u16string{0xFFFF});
  EXPECT_EQ(textOfCharacter(0xD800), std::u16string{0xD800});
  EXPECT_EQ(textOfCharacter(0x10000), u"\U00010000");
  EXPECT_EQ(textOfCharacter(0x10FFFF), u"\U0010FFFF");
  EXPECT_EQ(textOfCharacter(0xA02A4), u"\U000A02A4");
}

TEST(TextOfSequence, IsEmptyForAnEmptyRow) {
  EXPECT_EQ(textOfSequence(SequenceRow{}.data()), u"");
  EXPECT_EQ(textOfSequence(SequenceRow{0x61, 0x1F600}.data()), u"a😀");
}

}  // namespace
}  // namespace kr
