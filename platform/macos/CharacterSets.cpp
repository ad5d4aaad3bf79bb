#include "platform/CharacterSets.h"

#include <CoreFoundation/CoreFoundation.h>

#include "platform/macos/CFOwner.h"
#include "platform/macos/CFText.h"

namespace kr::platform {
namespace {

using macos::CFOwner;

CFStringEncoding encodingNamed(std::string_view name) {
  const CFOwner<CFStringRef> text(
      CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(name.data()),
                              static_cast<CFIndex>(name.size()), kCFStringEncodingASCII, false));
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
  std::u16string text(static_cast<std::size_t>(CFStringGetLength(string.get())), u'\0');
  CFStringGetCharacters(string.get(), CFRangeMake(0, static_cast<CFIndex>(text.size())),
                        reinterpret_cast<UniChar*>(text.data()));
  return text;
}

}  // namespace kr::platform
