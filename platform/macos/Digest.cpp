#include "platform/Digest.h"

#include <CommonCrypto/CommonDigest.h>

#include <limits>

namespace kr::platform {

std::array<std::uint8_t, 16> md5(std::string_view bytes) {
  CC_MD5_CTX context;
  CC_MD5_Init(&context);
  while (!bytes.empty()) {  // the length of one call has 32 bits
    const std::string_view part = bytes.substr(0, std::numeric_limits<CC_LONG>::max());
    CC_MD5_Update(&context, part.data(), static_cast<CC_LONG>(part.size()));
    bytes.remove_prefix(part.size());
  }
  std::array<std::uint8_t, CC_MD5_DIGEST_LENGTH> digest{};
  CC_MD5_Final(digest.data(), &context);
  return digest;
}

}  // namespace kr::platform
