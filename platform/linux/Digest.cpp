#include "platform/Digest.h"

#include <openssl/evp.h>

namespace kr::platform {

std::array<std::uint8_t, 16> md5(std::string_view bytes) {
  std::array<std::uint8_t, 16> digest{};
  unsigned length = 0;
  ::EVP_Digest(bytes.data(), bytes.size(), digest.data(), &length, ::EVP_md5(), nullptr);
  return digest;
}

}  // namespace kr::platform
