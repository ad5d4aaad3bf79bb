// The accent colours that a user can choose for the desktop, and what highlighted menu items look like in
// them. Main thread.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace kr {

// Calibrated components from 0 to 1.
struct RGB {
  double red;
  double green;
  double blue;

  bool operator==(const RGB&) const = default;
};

struct LightAndDark {
  RGB light;
  RGB dark;
};

struct AccentColor {
  std::string_view name;
  LightAndDark menu;      // the highlight in a menu of the system
  LightAndDark menuItem;  // the highlight of an item that a view draws
};

[[nodiscard]] const std::array<AccentColor, 8>& accentColors() noexcept;

// The name of the accent colour with the number that the desktop stores for it. None and unknown numbers are
// blue; an unknown one is logged unless it is the one that was logged last, which is 0 at first.
[[nodiscard]] std::string_view accentColorName(std::optional<long> number);

}  // namespace kr
