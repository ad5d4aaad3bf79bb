#include <gtest/gtest.h>

#include "library/process/CpuTime.h"
#include "library/process/DiagnosticsList.h"
#include "library/process/EventRules.h"
#include "library/process/HashStringSource.h"

namespace kr {
namespace {

TEST(HashStringSource, PrefersTheIdentifier) {
  EXPECT_EQ(hashStringSource("com.x.y", "ABCD", "X"), "id:com.x.y");
}

TEST(HashStringSource, TakesTheSignatureWithoutAnIdentifier) {
  EXPECT_EQ(hashStringSource("", "ABCD", "X"), "sig:ABCD");
}

TEST(HashStringSource, TakesTheNameWithoutASignature) {
  EXPECT_EQ(hashStringSource("", "????", "X"), "name:X");
  EXPECT_EQ(hashStringSource("", "", "X"), "name:X");
}

TEST(HashString, IsTheDigestInLowerCaseDigits) {
  EXPECT_EQ(hashString(""), "d41d8cd98f00b204e9800998ecf8427e");
  EXPECT_EQ(hashString("message digest"), "f96b697d7cb7938d525a2f31aaf161d0");
}

TEST(CpuTime, AddsMinutesAndSeconds) {
  EXPECT_DOUBLE_EQ(cpuSeconds("0:00.50"), 0.5);
  EXPECT_DOUBLE_EQ(cpuSeconds("2:03.25\n"), 123.25);
  EXPECT_DOUBLE_EQ(cpuSeconds("  10:00"), 600.0);
}

TEST(CpuTime, IsComputedInSinglePrecision) {
  EXPECT_DOUBLE_EQ(cpuSeconds("0:00.10"), static_cast<double>(0.1F));
  EXPECT_NE(cpuSeconds("0:00.10"), 0.1);
}

TEST(CpuTime, IsANumberHoweverManyDigitsFollow) {
  EXPECT_DOUBLE_EQ(cpuSeconds("0:1." + std::string(400, '0')), 1.0);
}

TEST(CpuTime, TakesTheFirstColon) {
  EXPECT_DOUBLE_EQ(cpuSeconds("1:02:03"), 62.0);
}

TEST(CpuTime, IsZeroWithoutAColon) {
  EXPECT_DOUBLE_EQ(cpuSeconds("12.5"), 0.0);
  EXPECT_DOUBLE_EQ(cpuSeconds(""), 0.0);
}

TEST(CpuTime, CountsWhatIsNoNumberAsZero) {
  EXPECT_DOUBLE_EQ(cpuSeconds("x:y"), 0.0);
  EXPECT_DOUBLE_EQ(cpuSeconds("x:5"), 5.0);
  EXPECT_DOUBLE_EQ(cpuSeconds("1:"), 60.0);
}

const TextOrder kByBytes = [](const std::string& one, const std::string& other) { return one < other; };

TEST(ProcessListText, SortsBothListsUnderTheirHeadings) {
  EXPECT_EQ(processListText({"b", "a"}, {"d", "c"}, kByBytes),
            "Foreground processes:\na\nb\n\nBackground processes:\nc\nd\n");
}

TEST(ProcessListText, SaysNoneForAnEmptyList) {
  EXPECT_EQ(processListText({"a"}, {}, kByBytes),
            "Foreground processes:\na\n\nBackground processes:\nnone\n");
  EXPECT_EQ(processListText({}, {}, kByBytes),
            "Foreground processes:\nnone\n\nBackground processes:\nnone\n");
}

TEST(Ticks, AreSixtiethsOfASecondCutOff) {
  EXPECT_EQ(ticks(0.5F), 30);
  EXPECT_EQ(ticks(0.01F), 0);
  EXPECT_EQ(ticks(1.99F), 119);
  EXPECT_EQ(ticks(0.0F), 0);
  EXPECT_EQ(ticks(-1.0F), -60);
}

TEST(Ticks, StayWithinTheirType) {
  EXPECT_EQ(ticks(1e30F), 2147483647);
  EXPECT_EQ(ticks(-1e30F), 0);
}

}  // namespace
}  // namespace kr
