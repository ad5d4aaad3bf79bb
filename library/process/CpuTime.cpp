#include "library/process/CpuTime.h"

#include "library/process/VersionRules.h"

namespace kr {
namespace {

// Beyond any precision; and the scale stays a number however many digits follow.
constexpr double kFinestScale = 1e15;

// A decimal number with a point, whatever the locale writes.
double leadingNumber(std::string_view text) {
  const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
  if (start == std::string_view::npos) return 0.0;
  text.remove_prefix(start);
  const bool negative = text.front() == '-';
  if (negative || text.front() == '+') text.remove_prefix(1);
  double value = 0.0;
  double scale = 1.0;
  bool inFraction = false;
  for (const char character : text) {
    if (character == '.' && !inFraction) {
      inFraction = true;
      continue;
    }
    if (character < '0' || character > '9') break;
    if (scale >= kFinestScale) continue;
    value = value * 10.0 + (character - '0');
    if (inFraction) scale *= 10.0;
  }
  return (negative ? -value : value) / scale;
}

}  // namespace

double cpuSeconds(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return 0.0;
  const auto minutes = static_cast<float>(leadingInteger(text.substr(0, colon)));
  const auto seconds = static_cast<float>(leadingNumber(text.substr(colon + 1)));
  return static_cast<double>(minutes * 60.0F + seconds);
}

}  // namespace kr
