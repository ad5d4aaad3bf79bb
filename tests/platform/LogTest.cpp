#include "platform/Log.h"

#include <gtest/gtest.h>

#include "platform/Services.h"
#include "platform/testing/RecordingLog.h"

namespace kr::platform {
namespace {

TEST(Log, OneEventIsOneLineWhateverItsTextHolds) {
  EXPECT_EQ(singleLine("a\nb\rc\td\x1b[0m\x7f"), "a\\nb\\rc\\td\\x1b[0m\\x7f");
  EXPECT_EQ(singleLine("Grüße \xFF"), "Grüße \xFF");
}

TEST(Log, LinesGoToTheSinkInForce) {
  testing::RecordingLog outer, inner;
  Services set = services();
  set.log = &outer;
  const ScopedServices outerScope(set);
  {
    set.log = &inner;
    const ScopedServices innerScope(set);
    kr::log("forged\n%@", "line");
  }
  kr::log("outer");
  EXPECT_EQ(inner.lines(), std::vector<std::string>{"forged\\nline"});
  EXPECT_EQ(outer.lines(), std::vector<std::string>{"outer"});
}

}  // namespace
}  // namespace kr::platform
