#include "platform/CaseFolding.h"

#include <CoreFoundation/CoreFoundation.h>

#include "platform/macos/CFOwner.h"
#include "platform/macos/CFText.h"

namespace kr::platform {

std::u16string foldedCase(std::u16string_view text) {
  const macos::CFOwner<CFMutableStringRef> string(CFStringCreateMutable(nullptr, 0));
  CFStringAppendCharacters(string.get(), reinterpret_cast<const UniChar*>(text.data()),
                           static_cast<CFIndex>(text.size()));
  CFStringFold(string.get(), kCFCompareCaseInsensitive, nullptr);
  return macos::units(string.get());
}

}  // namespace kr::platform
