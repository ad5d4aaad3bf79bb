#include "library/utilities/SecureInputReport.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace kr {
namespace {

constexpr std::string_view kMark = "\"kCGSSessionSecureInputPID\"=";
constexpr std::string_view kBlanks = " \t\n\v\f\r";

// The number at the start, after blanks; one that does not fit is the nearest that does.
std::int32_t leadingInteger(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return 0;
  }
  std::int32_t number = 0;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), number);
  if (end.ec != std::errc::result_out_of_range) return number;
  using Limits = std::numeric_limits<std::int32_t>;
  return text.starts_with('-') ? Limits::min() : Limits::max();
}

}  // namespace

std::vector<std::int32_t> secureInputProcessIDs(std::string_view report) {
  std::vector<std::int32_t> result;
  for (;;) {
    const std::size_t mark = report.find(kMark);
    if (mark == std::string_view::npos) return result;
    report.remove_prefix(mark + kMark.size());
    result.push_back(leadingInteger(report));
  }
}

}  // namespace kr
