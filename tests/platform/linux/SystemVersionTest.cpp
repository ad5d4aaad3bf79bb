#include "platform/SystemVersion.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "platform/Services.h"
#include "platform/SystemServices.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/Desktop.h"

namespace kr::platform {
namespace {

using Lines = std::vector<std::string>;
using Parts = std::tuple<int, int, int, int>;

constexpr const char* kVariable = "KR_SYSTEM_VERSION";

class OfferedSystem : public ::testing::Test {
 protected:
  OfferedSystem() {
    Services set = services();
    set.log = &log_;
    services_.emplace(set);
  }

  static Parts parts() {
    SystemVersion& system = systemSystemVersion();
    return {system.part(VersionPart::major).value_or(-1), system.part(VersionPart::minor).value_or(-1),
            system.part(VersionPart::bugfix).value_or(-1), system.part(VersionPart::packed).value_or(-1)};
  }

  static void expectOverride(const char* text, const Parts& expected, double appKit) {
    const kr::testing::ScopedVariable variable(kVariable, text);
    EXPECT_EQ(parts(), expected) << text;
    EXPECT_EQ(systemSystemVersion().appKitVersion(), appKit) << text;
  }

  platform::testing::RecordingLog log_;

 private:
  std::optional<ScopedServices> services_;
};

TEST_F(OfferedSystem, IsTenFifteen) {
  const kr::testing::ScopedVariable variable(kVariable, std::nullopt);
  EXPECT_EQ(parts(), Parts(10, 15, 0, 0x1090));
  EXPECT_EQ(systemSystemVersion().appKitVersion(), 1894);
}

TEST_F(OfferedSystem, IsWhatTheEnvironmentAsksFor) {
  expectOverride("10.12", {10, 12, 0, 0x1090}, 1504);
  expectOverride("10.12.6", {10, 12, 6, 0x1096}, 1504);
  expectOverride("10.6.8", {10, 6, 8, 0x1068}, 1038);
  expectOverride("11", {11, 0, 0, 0x1100}, 2022);
  expectOverride("12.3.1", {12, 3, 1, 0x1231}, 2022);
  expectOverride("10.4.11", {10, 4, 11, 0x1049}, 824);
  expectOverride("9.2", {9, 2, 0, 0x0920}, 743);
  expectOverride("", {10, 15, 0, 0x1090}, 1894);
  EXPECT_EQ(log_.lines(), Lines{});
}

TEST_F(OfferedSystem, StaysWhereTheEnvironmentAsksForNoVersion) {
  for (const char* text : {"new", "10.", ".10", "10..1", "10.12.6.1", "-10.1", "10.-1", "10.12b3", " 10.12",
                           "100", "10.100", "0", "0.9", "99999999999999999999"}) {
    expectOverride(text, {10, 15, 0, 0x1090}, 1894);
    EXPECT_EQ(log_.lines().back(),
              std::string("KR_SYSTEM_VERSION '") + text + "' is not a version, 10.15 stays in force");
  }
  EXPECT_EQ(log_.lines().size(), 14U) << "each is logged once";
}

}  // namespace
}  // namespace kr::platform
