#include "platform/gnustep/AppearanceNames.h"

#include <algorithm>
#include <array>

namespace kr::platform {
namespace {

struct Variant {
  std::string_view name;
  std::string_view of;
};

constexpr std::array<Variant, 7> kVariants{
    {{"NSAppearanceNameDarkAqua", "NSAppearanceNameAqua"},
     {"NSAppearanceNameVibrantLight", "NSAppearanceNameAqua"},
     {"NSAppearanceNameVibrantDark", "NSAppearanceNameDarkAqua"},
     {"NSAppearanceNameAccessibilityHighContrastAqua", "NSAppearanceNameAqua"},
     {"NSAppearanceNameAccessibilityHighContrastDarkAqua", "NSAppearanceNameDarkAqua"},
     {"NSAppearanceNameAccessibilityHighContrastVibrantLight", "NSAppearanceNameVibrantLight"},
     {"NSAppearanceNameAccessibilityHighContrastVibrantDark", "NSAppearanceNameVibrantDark"}}};

}  // namespace

std::optional<std::string_view> plainerAppearance(std::string_view name) noexcept {
  const auto found = std::find_if(kVariants.begin(), kVariants.end(),
                                  [name](const Variant& variant) { return variant.name == name; });
  if (found == kVariants.end()) return std::nullopt;
  return found->of;
}

}  // namespace kr::platform
