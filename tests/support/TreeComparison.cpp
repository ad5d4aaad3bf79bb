#include "tests/support/TreeComparison.h"

#include <gtest/gtest.h>
#include <stdio.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <set>
#include <sstream>
#include <vector>

namespace kr::testing {
namespace {

// Each is run in both folders; what it says must be the same. The names are sorted: no tool has to list a
// folder in any order.
constexpr std::array<const char*, 4> kReports{
    // The size of a folder is the file system's own business.
    "find . -type d -printf 'folder %P %m %U:%G %T@\\0' -o -printf '%y %P %m %U:%G %T@ %s bytes to %l\\0' | "
    "sort -z | tr '\\0' '\\n'",
    "find . -print0 | sort -z | xargs -0 getfattr --no-dereference --dump --match=- --encoding=hex",
    "find . ! -type l -print0 | sort -z | xargs -0 getfacl --numeric --omit-header --absolute-names",
    // With where the holes are.
    "tar --create --file - --sort=name --format=posix --sparse --sparse-version=0.0 --xattrs --acls "
    "--numeric-owner --pax-option=exthdr.name=%d/x/%f,delete=atime,delete=ctime . | sha256sum"};

std::string output(const std::string& command) {
  FILE* pipe = ::popen(("bash -o pipefail -c \"$(cat <<'END'\n" + command + "\nEND\n)\" 2>&1").c_str(), "r");
  std::string text;
  std::array<char, 4096> bytes{};
  while (const std::size_t size = ::fread(bytes.data(), 1, bytes.size(), pipe))
    text.append(bytes.data(), size);
  const int status = ::pclose(pipe);
  EXPECT_EQ(status, 0) << command << "\n" << text;
  return status == 0 ? text : "failed: " + command + "\n" + text;
}

// Never empty for texts that differ in more than their order.
std::string linesOnlyIn(const std::string& text, const std::string& other, const std::string& mark) {
  const auto lines = [](const std::string& all) {
    std::multiset<std::string> set;
    std::istringstream stream(all);
    for (std::string line; std::getline(stream, line);) set.insert(line);
    return set;
  };
  const auto ones = lines(text);
  const auto others = lines(other);
  std::vector<std::string> only;
  std::set_difference(ones.begin(), ones.end(), others.begin(), others.end(), std::back_inserter(only));
  std::string found;
  for (const std::string& line : only) found += mark + line + "\n";
  return found;
}

}  // namespace

std::string differences(const std::string& one, const std::string& other) {
  // With a negative window it looks at nanoseconds too.
  std::string found = output(
      "rsync --archive --hard-links --acls --xattrs --sparse --checksum --modify-window=-1 "
      "--dry-run --itemize-changes --delete '" +
      one + "/' '" + other + "/'");
  for (const char* report : kReports) {
    const std::string ones = output("cd '" + one + "' && " + report);
    const std::string others = output("cd '" + other + "' && " + report);
    if (ones != others)
      found += std::string(report) + "\n" + linesOnlyIn(ones, others, "< ") + linesOnlyIn(others, ones, "> ");
  }
  return found;
}

}  // namespace kr::testing
