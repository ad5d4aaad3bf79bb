#include "installer/LaunchArguments.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace kr {
namespace {

using Words = std::vector<std::string>;

TEST(LaunchArguments, CodeKeysGatherEveryPlainWordUntilTheNextKey) {
  const InstallerArguments expected{
      {"", "Installer"}, {"productName", "Foo"}, {"quitCode", Words{"AAAA", "BBBB"}}, {"version", "2.0"}};
  EXPECT_EQ(
      parsedArguments({"Installer", "-productName", "Foo", "-quitCode", "AAAA", "BBBB", "-version", "2.0"}),
      expected);
}

TEST(LaunchArguments, TheLastValueOfAKeyStands) {
  const InstallerArguments expected{{"", "I"}, {"version", "2"}};
  EXPECT_EQ(parsedArguments({"I", "-version", "1", "2"}), expected);
  EXPECT_EQ(parsedArguments({"I", "-version", "1", "-version", "2"}), expected);
}

TEST(LaunchArguments, AKeyWithoutAValueStoresNothing) {
  const InstallerArguments expected{{"", "I"}, {"version", "1"}};
  EXPECT_EQ(parsedArguments({"I", "-documentationPath", "-version", "1", "-readMePath"}), expected);
}

TEST(LaunchArguments, ACodeKeyNamedTwiceGoesOnWithItsList) {
  const InstallerArguments expected{{"quitCode", Words{"AAAA", "BBBB"}}, {"version", "1"}, {"", "I"}};
  EXPECT_EQ(parsedArguments({"I", "-quitCode", "AAAA", "-version", "1", "-quitCode", "BBBB"}), expected);
}

TEST(LaunchArguments, EveryKeyThatEndsInCodeIsAList) {
  const InstallerArguments expected{
      {"", "I"}, {"Code", Words{"a"}}, {"otherCode", Words{"b"}}, {"code", "d"}};
  EXPECT_EQ(parsedArguments({"I", "-Code", "a", "-otherCode", "b", "-code", "c", "d"}), expected);
}

TEST(LaunchArguments, OnlyTheFirstDashIsTakenFromAKey) {
  const InstallerArguments expected{{"-x", "1"}, {"", "I"}};
  EXPECT_EQ(parsedArguments({"I", "--x", "1"}), expected);
}

TEST(LaunchArguments, ALoneDashOpensTheEmptyKeyAgain) {
  const InstallerArguments expected{{"", "word"}};
  EXPECT_EQ(parsedArguments({"I", "-", "word"}), expected);
}

TEST(LaunchArguments, UnknownPairsAreKept) {
  const InstallerArguments expected{{"", "I"}, {"AppleLanguages", "(de)"}};
  EXPECT_EQ(parsedArguments({"I", "-AppleLanguages", "(de)"}), expected);
}

TEST(LaunchArguments, AnEmptyWordIsAValue) {
  const InstallerArguments expected{{"", "I"}, {"version", ""}};
  EXPECT_EQ(parsedArguments({"I", "-version", ""}), expected);
}

TEST(LaunchArguments, NoWordsGiveNoArguments) {
  EXPECT_TRUE(parsedArguments({}).empty());
}

TEST(LaunchArguments, AProductStartsTheInstallerWithAtLeastThreeWords) {
  EXPECT_FALSE(isStartedByProduct({"I"}));
  EXPECT_FALSE(isStartedByProduct({"I", "-x"}));
  EXPECT_TRUE(isStartedByProduct({"I", "-x", "1"}));
}

TEST(LaunchArguments, ALanguageOverrideFirstIsADirectInvocation) {
  EXPECT_FALSE(isStartedByProduct({"I", "-AppleLanguages", "(de)", "-productName", "Foo"}));
  EXPECT_TRUE(isStartedByProduct({"I", "-productName", "Foo", "-AppleLanguages", "(de)"}));
  EXPECT_TRUE(isStartedByProduct({"I", "-AppleLanguagesX", "(de)"}));
}

TEST(LaunchArguments, SecondsAreReadFromTheFrontOfATextInDecimalNotation) {
  const std::pair<const char*, float> readings[] = {{"2.5", 2.5F},    {"2", 2},
                                                    {"+3", 3},        {"-1", -1},
                                                    {" -1", -1},      {".5", 0.5F},
                                                    {"5.", 5},        {"00012", 12},
                                                    {"1e1", 10},      {"1E2", 100},
                                                    {"25e-1", 2.5F},  {"1.e1", 10},
                                                    {" 3", 3},        {"\t\n\v\f\r4", 4},
                                                    {"3 seconds", 3}, {"2,5", 2},
                                                    {"1.2.3", 1.2F},  {"1_000", 1},
                                                    {"1e", 1},        {"1e+", 1},
                                                    {"1d1", 1},       {"16777217", 16777216}};
  for (const auto& [text, seconds] : readings) EXPECT_EQ(secondsFromText(text), seconds) << text;
}

TEST(LaunchArguments, WhatDoesNotBeginWithANumberIsNoSeconds) {
  for (const char* text : {"", " ", "soon", "inf", "-inf", "infinity", "nan", "0x10", "-", "+", ".", "0",
                           "-0", "e5", ".e1", "--1", "+-1", "\u0663", "1e-400"}) {
    EXPECT_EQ(secondsFromText(text), 0.0F) << text;
  }
}

TEST(LaunchArguments, SecondsBeyondSinglePrecisionAreEndless) {
  constexpr float kEndless = std::numeric_limits<float>::infinity();
  for (const char* text : {"1e39", "1e400", "1e99999999999", "999999999999999999999999999999999999999999"}) {
    EXPECT_EQ(secondsFromText(text), kEndless) << text;
  }
  EXPECT_EQ(secondsFromText("-1e400"), -kEndless);
  EXPECT_FLOAT_EQ(secondsFromText("99999999999999999999999999"), 1e26F);
}

TEST(LaunchArguments, DescriptionsQuoteWhatIsNotAPlainWord) {
  EXPECT_EQ(listDescription({"/usr/bin/I", "-version", "a \"b\" \\", ""}),
            R"((/usr/bin/I, "-version", "a \"b\" \\", ""))");
  EXPECT_EQ(description(parsedArguments({"I", "-quitCode", "AA A", "B", "-version", "1.0"})),
            R"({"" = I; quitCode = ("AA A", B); version = 1.0; })");
  EXPECT_EQ(listDescription({}), "()");
}

}  // namespace
}  // namespace kr
