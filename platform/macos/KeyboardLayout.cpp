#include "platform/KeyboardLayout.h"

#include <Carbon/Carbon.h>

#include <array>

#include "platform/macos/CFOwner.h"

namespace kr::platform {

std::optional<std::u16string> textOfKey(std::uint16_t keyCode, std::uint32_t modifiers) {
  const macos::CFOwner<TISInputSourceRef> source(TISCopyCurrentKeyboardInputSource());
  if (!source) return std::nullopt;
  // An input method for ideographs has no layout data.
  auto* const data =
      static_cast<CFDataRef>(TISGetInputSourceProperty(source.get(), kTISPropertyUnicodeKeyLayoutData));
  if (data == nullptr) return std::nullopt;
  const auto* const layout = reinterpret_cast<const UCKeyboardLayout*>(CFDataGetBytePtr(data));
  UInt32 deadKeys = 0;
  UniCharCount length = 0;
  std::array<UniChar, 4> units{};
  if (UCKeyTranslate(layout, keyCode, kUCKeyActionDisplay, modifiers, LMGetKbdType(), 0, &deadKeys,
                     units.size(), &length, units.data()) != noErr) {
    return std::nullopt;
  }
  return std::u16string(units.begin(), units.begin() + length);
}

}  // namespace kr::platform
