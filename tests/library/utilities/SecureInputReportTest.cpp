#include "library/utilities/SecureInputReport.h"

#include <gtest/gtest.h>

namespace kr {
namespace {

using IDs = std::vector<std::int32_t>;

TEST(SecureInputReport, NamesProcessesByTheirMark) {
  EXPECT_EQ(secureInputProcessIDs(R"(  | "IOConsoleUsers" = ({"kCGSSessionSecureInputPID"=417,"kCGS"=1}))"),
            IDs{417});
  EXPECT_EQ(secureInputProcessIDs(R"("kCGSSessionSecureInputPID"=12"kCGSSessionSecureInputPID"=7)"),
            (IDs{12, 7}));
  EXPECT_EQ(secureInputProcessIDs(R"("kCGSSessionSecureInputPID"=12,"kCGSSessionSecureInputPID"=12)"),
            (IDs{12, 12}));
}

TEST(SecureInputReport, NamesNobodyWithoutTheMark) {
  EXPECT_EQ(secureInputProcessIDs(""), IDs{});
  EXPECT_EQ(secureInputProcessIDs("kCGSSessionSecureInputPID=12"), IDs{});
  EXPECT_EQ(secureInputProcessIDs(R"("kCGSSessionSecureInputPID" = 12)"), IDs{});
  EXPECT_EQ(secureInputProcessIDs(R"("kcgssessionsecureinputpid"=12)"), IDs{});
}

TEST(SecureInputReport, HasTheLeadingNumberAfterAMark) {
  EXPECT_EQ(secureInputProcessIDs("\"kCGSSessionSecureInputPID\"= \t\n012x"), IDs{12});
  EXPECT_EQ(secureInputProcessIDs("\"kCGSSessionSecureInputPID\"=+5"), IDs{5});
  EXPECT_EQ(secureInputProcessIDs("\"kCGSSessionSecureInputPID\"=-5"), IDs{-5});
  EXPECT_EQ(secureInputProcessIDs("\"kCGSSessionSecureInputPID\"=+-5"), IDs{0});
  EXPECT_EQ(secureInputProcessIDs("\"kCGSSessionSecureInputPID\"=x5"), IDs{0});
  EXPECT_EQ(secureInputProcessIDs("\"kCGSSessionSecureInputPID\"="), IDs{0});
  EXPECT_EQ(secureInputProcessIDs("\"kCGSSessionSecureInputPID\"=   "), IDs{0});
  EXPECT_EQ(secureInputProcessIDs("\"kCGSSessionSecureInputPID\"=99999999999"), IDs{2147483647});
  EXPECT_EQ(secureInputProcessIDs("\"kCGSSessionSecureInputPID\"=-99999999999"), IDs{-2147483647 - 1});
}

}  // namespace
}  // namespace kr
