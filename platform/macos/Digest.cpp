#include "platform/Digest.h"

#include <CommonCrypto/CommonDigest.h>

namespace kr::platform {

std::array<std::uint8_t, 16> md5(std::string_view bytes) {
  std::array<std::uint8_t, CC_MD5_DIGEST_LENGTH> digest{};
  ::CC_MD5(bytes.data(), static_cast<CC_LONG>(bytes.size()), digest.data());
  return digest;
}

}  // namespace kr::platform
