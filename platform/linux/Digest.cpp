#include "platform/Digest.h"

#include <openssl/evp.h>

#include <memory>

namespace kr::platform {

MD5Digest md5(const std::function<void(const TakeBytes&)>& produce) {
  MD5Digest digest{};
  const std::unique_ptr<EVP_MD_CTX, decltype(&::EVP_MD_CTX_free)> context(::EVP_MD_CTX_new(),
                                                                          &::EVP_MD_CTX_free);
  ::EVP_DigestInit_ex(context.get(), ::EVP_md5(), nullptr);
  produce(
      [&context](std::string_view bytes) { ::EVP_DigestUpdate(context.get(), bytes.data(), bytes.size()); });
  ::EVP_DigestFinal_ex(context.get(), digest.data(), nullptr);
  return digest;
}

}  // namespace kr::platform
