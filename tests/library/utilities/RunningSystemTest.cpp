#include "library/utilities/RunningSystem.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/Services.h"
#include "platform/testing/FixedDesktop.h"
#include "platform/testing/RecordingLog.h"

namespace kr {
namespace {

using platform::VersionPart;
using Lines = std::vector<std::string>;

class RunningSystem : public ::testing::Test {
 protected:
  RunningSystem() {
    platform::Services set = platform::services();
    set.log = &log_;
    set.systemVersion = &system_;
    services_.emplace(set);
  }

  void setParts(std::int32_t major, std::int32_t minor, std::int32_t bugfix) {
    system_.parts = {{VersionPart::major, major}, {VersionPart::minor, minor}, {VersionPart::bugfix, bugfix}};
  }

  platform::testing::FixedSystemVersion system_;
  platform::testing::RecordingLog log_;

 private:
  std::optional<platform::ScopedServices> services_;
};

TEST_F(RunningSystem, HasThreeParts) {
  setParts(10, 15, 7);
  EXPECT_EQ(threePartVersion(), (ThreePartVersion{10, 15, 7}));
  EXPECT_EQ(systemVersionString(), "10.15.7");
  setParts(65536 + 10, -1, 70000);
  EXPECT_EQ(threePartVersion(), (ThreePartVersion{10, 65535, 4464})) << "sixteen bits each";
  EXPECT_EQ(log_.lines(), Lines{});
}

TEST_F(RunningSystem, IsNamedWithoutABugfixOfZero) {
  setParts(11, 0, 0);
  EXPECT_EQ(systemVersionString(), "11.0");
  setParts(10, 15, 0);
  EXPECT_EQ(systemVersionString(), "10.15");
  setParts(10, 14, 6);
  EXPECT_EQ(systemVersionString(), "10.14.6");
  setParts(11, 0, 1);
  EXPECT_EQ(systemVersionString(), "11.0.1");
}

TEST_F(RunningSystem, LogsThePartsThatItDoesNotTell) {
  system_.parts = {{VersionPart::major, 10}, {VersionPart::bugfix, 6}};
  EXPECT_EQ(threePartVersion(), (ThreePartVersion{10, 0, 6}));
  EXPECT_EQ(log_.lines(), Lines{"cannot get minor version number"});
  system_.parts = {{VersionPart::major, 10}};
  EXPECT_EQ(threePartVersion(), (ThreePartVersion{10, 0, 0}));
  EXPECT_EQ(log_.lines(), (Lines{"cannot get minor version number", "cannot get minor version number",
                                 "cannot get bugfix version number"}));
}

TEST_F(RunningSystem, IsReadFromItsDigitsWhenItDoesNotTellParts) {
  system_.parts = {{VersionPart::minor, 15}, {VersionPart::packed, 0x1049}};
  EXPECT_EQ(threePartVersion(), (ThreePartVersion{10, 4, 9}));
  EXPECT_EQ(systemVersionString(), "10.4.9");
  system_.parts = {{VersionPart::packed, 0x92345}};
  EXPECT_EQ(threePartVersion(), (ThreePartVersion{23, 4, 5})) << "four digits count";
  EXPECT_EQ(log_.lines(), Lines{});
}

TEST_F(RunningSystem, IsUnknownWhenItTellsNothing) {
  system_.parts = {};
  EXPECT_EQ(threePartVersion(), ThreePartVersion{});
  EXPECT_EQ(systemVersionString(), "0.0");
  EXPECT_EQ(hexSystemVersion(), 0U);
  EXPECT_EQ(log_.lines(), Lines{});
}

TEST_F(RunningSystem, HasAHexadecimalVersion) {
  system_.parts = {{VersionPart::packed, 0x1068}};
  EXPECT_EQ(hexSystemVersion(), 0x1068U);
}

TEST_F(RunningSystem, HasADecimalVersionThatIsKept) {
  DecimalSystemVersion version;
  setParts(10, 15, 7);
  EXPECT_EQ(version.value(), 101507U);
  const int asked = system_.questions;
  setParts(11, 0, 0);
  EXPECT_EQ(version.value(), 101507U);
  EXPECT_EQ(system_.questions, asked);
  EXPECT_EQ(DecimalSystemVersion().value(), 110000U);
}

TEST_F(RunningSystem, IsAskedAgainWhileItsDecimalVersionIsUnknown) {
  DecimalSystemVersion version;
  system_.parts = {};
  EXPECT_EQ(version.value(), 0U);
  EXPECT_EQ(version.value(), 0U);
  setParts(10, 13, 0);
  EXPECT_EQ(version.value(), 101300U);
}

}  // namespace
}  // namespace kr
