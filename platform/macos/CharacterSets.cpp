#include "platform/CharacterSets.h"

#include <CoreFoundation/CoreFoundation.h>

#include "platform/macos/CFOwner.h"
#include "platform/macos/CFText.h"

namespace kr::platform {
namespace {

using macos::CFOwner;

CFStringEncoding encodingNamed(std::string_view name) {
  const CFOwner<CFStringRef> text = macos::string(name);
  return text && !name.empty() ? CFStringConvertIANACharSetNameToEncoding(text.get())
                               : kCFStringEncodingInvalidId;
}

}  // namespace

std::optional<std::string> characterSetNamed(std::string_view name) {
  const CFStringEncoding encoding = encodingNamed(name);
  if (encoding == kCFStringEncodingInvalidId || !CFStringIsEncodingAvailable(encoding)) return std::nullopt;
  return macos::text(CFStringConvertEncodingToIANACharSetName(encoding));
}

std::optional<std::u16string> decodedFrom(std::string_view name, std::string_view bytes) {
  const CFStringEncoding encoding = encodingNamed(name);
  if (encoding == kCFStringEncodingInvalidId) return std::nullopt;
  const CFOwner<CFStringRef> string(
      CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(bytes.data()),
                              static_cast<CFIndex>(bytes.size()), encoding, true));
  if (!string) return std::nullopt;
  return macos::units(string.get());
}

}  // namespace kr::platform
