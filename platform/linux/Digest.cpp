#include "platform/Digest.h"

#include <openssl/evp.h>

#include <memory>

namespace kr::platform {

MD5Digest md5(const std::function<void(const TakeBytes&)>& produce) {
  MD5Digest digest{};
  const std::unique_ptr<EVP_MD_CTX, decltype(&::EVP_MD_CTX_free)> context(::EVP_MD_CTX_new(),
                                                                          &::EVP_MD_CTX_free);
  // Looked up once: that takes longer than the digest of a short text.
  static EVP_MD* const algorithm = ::EVP_MD_fetch(nullptr, "MD5", nullptr);
  ::EVP_DigestInit_ex2(context.get(), algorithm, nullptr);
  produce(
      [&context](std::string_view bytes) { ::EVP_DigestUpdate(context.get(), bytes.data(), bytes.size()); });
  ::EVP_DigestFinal_ex(context.get(), digest.data(), nullptr);
  return digest;
}

}  // namespace kr::platform
