#include "library/process/VersionRules.h"

#include <limits>
#include <optional>

namespace kr {
namespace {

constexpr std::string_view kBlanks = " \t\n\v\f\r";

// Takes the text up to the next dot off the front of the rest; none once there is no rest.
std::optional<std::string_view> nextComponent(std::optional<std::string_view>& rest) {
  if (!rest) return std::nullopt;
  const std::size_t dot = rest->find('.');
  const std::string_view component = rest->substr(0, dot);
  if (dot == std::string_view::npos) {
    rest.reset();
  } else {
    rest = rest->substr(dot + 1);
  }
  return component;
}

}  // namespace

int leadingInteger(std::string_view text) {
  const std::size_t start = text.find_first_not_of(kBlanks);
  if (start == std::string_view::npos) return 0;
  text.remove_prefix(start);
  const bool negative = text.front() == '-';
  if (negative || text.front() == '+') text.remove_prefix(1);
  constexpr long long kLimit = std::numeric_limits<int>::max();
  long long value = 0;
  for (const char character : text) {
    if (character < '0' || character > '9') break;
    if (value <= kLimit) value = value * 10 + (character - '0');
  }
  if (negative) return static_cast<int>(value > kLimit ? -kLimit - 1 : -value);
  return static_cast<int>(value > kLimit ? kLimit : value);
}

bool isAtLeastVersion(std::string_view version, std::string_view wanted) {
  std::optional<std::string_view> versionRest = version;
  std::optional<std::string_view> wantedRest = wanted;
  for (;;) {
    const std::optional<std::string_view> have = nextComponent(versionRest);
    const std::optional<std::string_view> need = nextComponent(wantedRest);
    if (!have && !need) return true;
    const int haveNumber = leadingInteger(have.value_or(""));
    const int needNumber = leadingInteger(need.value_or(""));
    if (haveNumber != needNumber) return haveNumber > needNumber;
  }
}

}  // namespace kr
