// Versions and times of products and processes.
#include <cmath>

#include "fuzz/Fuzz.h"
#include "library/process/CpuTime.h"
#include "library/process/VersionResource.h"
#include "library/process/VersionRules.h"
#include "library/text/LeadingNumbers.h"
#include "library/utilities/VersionOrder.h"
#include "platform/UTF8Bytes.h"

using kr::fuzz::require;

namespace {

void requireAnOrder(std::u16string_view a, std::u16string_view b, std::u16string_view c) {
  const auto ab = kr::versionOrder(a, b);
  const auto bc = kr::versionOrder(b, c);
  const auto ac = kr::versionOrder(a, c);
  require(kr::versionOrder(a, a) == 0, "a version is in no order with itself");
  require((ab < 0) == (kr::versionOrder(b, a) > 0), "the order of two versions can be turned round");
  if (ab <= 0 && bc <= 0) {
    require(ac <= 0 && (ac == 0) == (ab == 0 && bc == 0), "three versions can be sorted");
  }
  require(a.starts_with(kr::plainVersion(a)), "a plain version is a beginning");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input = kr::fuzz::text(data, size);
  const auto version = kr::versionFromResource(input);
  require(version.has_value() == (size >= 4), "four bytes are a version");
  if (version) require(kr::isAtLeastVersion(*version, "0"), "a version of a resource is a version");

  const std::vector<std::string> words = kr::fuzz::words(input);
  const std::string& one = words.front();
  const std::string& other = words.back();
  require(kr::isAtLeastVersion(one, one), "a version is at least itself");
  require(kr::isAtLeastVersion(one, other) || kr::isAtLeastVersion(other, one),
          "of two versions one is later");
  require(kr::leadingInteger(std::to_string(kr::leadingInteger(one))) == kr::leadingInteger(one),
          "a number prints and reads again");
  requireAnOrder(kr::platform::utf16FromBytes(one), kr::platform::utf16FromBytes(words[words.size() / 2]),
                 kr::platform::utf16FromBytes(other));
  // A fuzzer is long in coming to long texts by itself.
  std::string longTime = "0:1.";
  while (longTime.size() < 400) longTime += one + '1';
  require(!std::isnan(kr::cpuSeconds(one)) && !std::isnan(kr::cpuSeconds(longTime)), "a time is a number");
  return 0;
}
