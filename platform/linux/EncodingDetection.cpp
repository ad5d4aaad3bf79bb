#include "platform/EncodingDetection.h"

#include "platform/UTF8Bytes.h"

namespace kr::platform {

// Text is UTF-8 on this system, and no other encoding is likely to look like it. A zero byte stands in no
// text, but in UTF-16.
std::optional<std::u16string> detectedText(const std::string& /*path*/, std::string_view contents) {
  if (contents.find('\0') != std::string_view::npos) return std::nullopt;
  return utf16FromUTF8(contents);
}

}  // namespace kr::platform
