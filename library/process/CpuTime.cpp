#include "library/process/CpuTime.h"

#include "library/text/LeadingNumbers.h"

namespace kr {
double cpuSeconds(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return 0.0;
  const auto minutes = static_cast<float>(leadingInteger(text.substr(0, colon)));
  const auto seconds = static_cast<float>(leadingDecimal(text.substr(colon + 1)));
  return static_cast<double>(minutes * 60.0F + seconds);
}

}  // namespace kr
