#include "library/process/VersionRules.h"

#include <optional>

#include "library/text/LeadingNumbers.h"

namespace kr {
namespace {

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
