#include "platform/CaseFolding.h"

#include <CoreFoundation/CoreFoundation.h>

#include "platform/macos/CFOwner.h"

namespace kr::platform {

std::u16string foldedCase(std::u16string_view text) {
  const macos::CFOwner<CFMutableStringRef> string(CFStringCreateMutable(nullptr, 0));
  CFStringAppendCharacters(string.get(), reinterpret_cast<const UniChar*>(text.data()),
                           static_cast<CFIndex>(text.size()));
  CFStringFold(string.get(), kCFCompareCaseInsensitive, nullptr);
  std::u16string folded(static_cast<std::size_t>(CFStringGetLength(string.get())), u'\0');
  CFStringGetCharacters(string.get(), CFRangeMake(0, static_cast<CFIndex>(folded.size())),
                        reinterpret_cast<UniChar*>(folded.data()));
  return folded;
}

}  // namespace kr::platform
