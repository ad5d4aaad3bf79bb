#include "platform/Digest.h"

#include <CommonCrypto/CommonDigest.h>

#include <limits>

namespace kr::platform {

MD5Digest md5(const std::function<void(const TakeBytes&)>& produce) {
  CC_MD5_CTX context;
  CC_MD5_Init(&context);
  produce([&context](std::string_view bytes) {
    while (!bytes.empty()) {  // the length of one call has 32 bits
      const std::string_view part = bytes.substr(0, std::numeric_limits<CC_LONG>::max());
      CC_MD5_Update(&context, part.data(), static_cast<CC_LONG>(part.size()));
      bytes.remove_prefix(part.size());
    }
  });
  MD5Digest digest{};
  static_assert(CC_MD5_DIGEST_LENGTH == std::tuple_size_v<MD5Digest>);
  CC_MD5_Final(digest.data(), &context);
  return digest;
}

}  // namespace kr::platform
