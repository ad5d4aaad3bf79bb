#include "library/sound/AlertVolume.h"

#include <algorithm>
#include <array>

namespace kr {
namespace {

// Below the first band nothing is heard; each band covers a quarter of what is.
struct Band {
  double above;
  double width;
  double volume;  // at the lower end
};
constexpr std::array<Band, 4> kBands{
    {{0.35, 0.12, 0.00}, {0.47, 0.14, 0.25}, {0.61, 0.17, 0.50}, {0.78, 0.22, 0.75}}};
constexpr double kQuarter = 0.25;

}  // namespace

float playbackVolume(float stored) {
  const double value = stored;
  const auto band =
      std::find_if(kBands.rbegin(), kBands.rend(), [value](const Band& one) { return value > one.above; });
  if (band == kBands.rend()) return 0.0F;
  const double volume = band->volume + (value - band->above) / band->width * kQuarter;
  return std::min(static_cast<float>(volume), 1.0F);
}

}  // namespace kr
