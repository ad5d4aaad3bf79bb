// Versions and times of products and processes.
#include <cmath>

#include "fuzz/Fuzz.h"
#include "library/process/CpuTime.h"
#include "library/process/VersionResource.h"
#include "library/process/VersionRules.h"

using kr::fuzz::require;

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
  // A fuzzer is long in coming to long texts by itself.
  std::string longTime = "0:1.";
  while (longTime.size() < 400) longTime += one + '1';
  require(!std::isnan(kr::cpuSeconds(one)) && !std::isnan(kr::cpuSeconds(longTime)), "a time is a number");
  return 0;
}
