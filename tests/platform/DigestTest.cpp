#include "platform/Digest.h"

#include <gtest/gtest.h>

namespace kr::platform {
namespace {

struct Vector {
  std::string_view text, digest;
};

// The test suite of RFC 1321.
constexpr std::array<Vector, 7> kVectors{
    {{"", "d41d8cd98f00b204e9800998ecf8427e"},
     {"a", "0cc175b9c0f1b6a831c399e269772661"},
     {"abc", "900150983cd24fb0d6963f7d28e17f72"},
     {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
     {"abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b"},
     {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789", "d174ab98d277d9f5a5611c2c9f419d9f"},
     {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
      "57edf4a22be3c955ac49da2e2107b67a"}}};

TEST(MD5, GivesTheDigestsOfItsTestSuite) {
  for (const Vector& vector : kVectors) EXPECT_EQ(hexadecimal(md5(vector.text)), vector.digest);
}

TEST(MD5, OfBytesInPartsIsThatOfTheWhole) {
  for (const Vector& vector : kVectors) {
    const MD5Digest digest = md5([&vector](const TakeBytes& take) {
      for (const char& byte : vector.text) take({&byte, 1});
    });
    EXPECT_EQ(hexadecimal(digest), vector.digest);
  }
}

}  // namespace
}  // namespace kr::platform
