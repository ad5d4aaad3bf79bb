#include "library/process/HashStringSource.h"

#include "platform/Digest.h"

namespace kr {

std::string hashStringSource(std::string_view identifier, std::string_view signature, std::string_view name) {
  if (!identifier.empty()) return "id:" + std::string(identifier);
  if (!signature.empty() && signature != "????") return "sig:" + std::string(signature);
  return "name:" + std::string(name);
}

std::string hashString(std::string_view source) {
  return platform::hexadecimal(platform::md5(source));
}

}  // namespace kr
