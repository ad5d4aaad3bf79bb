#include "library/utilities/SafeAddress.h"

#include <gtest/gtest.h>

namespace kr {
namespace {

using Address = std::optional<std::u16string>;

TEST(SafeAddress, BeginsWithHTTPOnAnOldSystem) {
  EXPECT_EQ(addressWithoutSecureHTTP(u"https://a.example/b?https:c", 101206, 101300),
            u"http://a.example/b?https:c");
  EXPECT_EQ(addressWithoutSecureHTTP(u"https:", 101299, 101300), u"http:");
}

TEST(SafeAddress, StaysAsItIsFromTheFirstFittingSystemOn) {
  EXPECT_EQ(addressWithoutSecureHTTP(u"https://a.example", 101300, 101300), Address{});
  EXPECT_EQ(addressWithoutSecureHTTP(u"https://a.example", 110000, 101300), Address{});
}

TEST(SafeAddress, OfAnotherSchemeStaysAsItIs) {
  for (const std::u16string_view address : {u"http://a.example", u"HTTPS://a.example", u"httpsx://a.example",
                                            u" https://a.example", u"https", u"", u"ftp://https:"}) {
    EXPECT_EQ(addressWithoutSecureHTTP(address, 100000, 101300), Address{});
  }
}

TEST(SafeAddress, IsMeasuredByTheSettingWhereThatIsAVersion) {
  EXPECT_EQ(firstSystemWithSecureHTTP(std::nullopt), 101300);
  EXPECT_EQ(firstSystemWithSecureHTTP(101200), 101200);
  EXPECT_EQ(firstSystemWithSecureHTTP(100000), 100000);
  EXPECT_EQ(firstSystemWithSecureHTTP(109999), 109999);
  EXPECT_EQ(firstSystemWithSecureHTTP(110000), 101300);
  EXPECT_EQ(firstSystemWithSecureHTTP(99999), 101300);
  EXPECT_EQ(firstSystemWithSecureHTTP(5), 101300);
  EXPECT_EQ(firstSystemWithSecureHTTP(0), 101300);
  EXPECT_EQ(firstSystemWithSecureHTTP(-101200), 101300);
  EXPECT_EQ(firstSystemWithSecureHTTP((1LL << 32) + 101200), 101300);
}

}  // namespace
}  // namespace kr
