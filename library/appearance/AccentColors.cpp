#include "library/appearance/AccentColors.h"

#include <algorithm>

#include "platform/Log.h"

namespace kr {
namespace {

constexpr std::string_view kDefault = "Blue";

constexpr RGB bytes(int red, int green, int blue) {
  return {red / 255.0, green / 255.0, blue / 255.0};
}

constexpr std::array<AccentColor, 8> kColors{
    {{"Blue", {{0.16, 0.43, 0.95}, {0.04, 0.29, 0.76}}, {bytes(60, 139, 246), bytes(12, 111, 225)}},
     {"Purple", {{0.57, 0.26, 0.58}, {0.44, 0.18, 0.45}}, {bytes(169, 99, 170), bytes(135, 59, 135)}},
     {"Pink", {{0.95, 0.31, 0.61}, {0.73, 0.16, 0.43}}, {bytes(248, 114, 176), bytes(218, 74, 142)}},
     {"Red", {{0.85, 0.25, 0.29}, {0.76, 0.18, 0.22}}, {bytes(229, 95, 100), bytes(199, 54, 60)}},
     {"Orange", {{0.95, 0.51, 0.22}, {0.73, 0.34, 0.08}}, {bytes(248, 154, 79), bytes(218, 117, 31)}},
     {"Yellow", {{0.97, 0.71, 0.25}, {0.76, 0.53, 0.11}}, {bytes(252, 198, 90), bytes(222, 164, 42)}},
     {"Green", {{0.42, 0.73, 0.32}, {0.26, 0.54, 0.17}}, {bytes(128, 198, 107), bytes(90, 165, 66)}},
     {"Graphite", {{0.59, 0.59, 0.59}, {0.34, 0.34, 0.34}}, {bytes(162, 162, 162), bytes(124, 128, 131)}}}};

// Blue is stored as no number at all.
struct Number {
  long number;
  std::string_view name;
};
constexpr std::array<Number, 7> kNumbers{
    {{-1, "Graphite"}, {0, "Red"}, {1, "Orange"}, {2, "Yellow"}, {3, "Green"}, {5, "Purple"}, {6, "Pink"}}};

long gLastUnknown = 0;

}  // namespace

const std::array<AccentColor, 8>& accentColors() noexcept {
  return kColors;
}

std::string_view accentColorName(std::optional<long> number) {
  if (!number) return kDefault;
  const auto found = std::find_if(kNumbers.begin(), kNumbers.end(),
                                  [number](const Number& known) { return known.number == *number; });
  if (found != kNumbers.end()) return found->name;
  if (*number != gLastUnknown) {
    log("*** unknown accent color index: %ld", *number);
    gLastUnknown = *number;
  }
  return kDefault;
}

}  // namespace kr
