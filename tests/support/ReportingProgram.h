// A process that reports by lines what it is told: one of the programs here, started with "-output N" and
// words of its own. Its first line starts with "ready".
//
//   ReportingProgram monitor(KR_PROCESS_MONITOR);
//   TestApplication one(folder, "One.app", {}, {"window", "A"});
//   EXPECT_TRUE(monitor.writes("started 1"));
#pragma once

#include <string>
#include <vector>

#include "platform/posix/FileDescriptor.h"
#include "tests/support/Child.h"

namespace kr::testing {

class ReportingProgram {
 public:
  // Ready once this returns. Throws std::runtime_error where it does not start.
  explicit ReportingProgram(const std::string& program, const std::vector<std::string>& words = {});

  // Every line so far after the first.
  [[nodiscard]] const std::vector<std::string>& lines();

  // Whether a line that starts so comes, later than those that were waited for before.
  [[nodiscard]] bool writes(const std::string& start, double seconds = 5.0);

  // Whether it writes nothing for so long beyond what was waited for.
  [[nodiscard]] bool isSilent(double seconds);

  // How many descriptors it has open.
  [[nodiscard]] std::size_t descriptors() const;

  [[nodiscard]] pid_t pid() const { return child_.pid(); }
  [[nodiscard]] bool isRunning() const;

 private:
  void read();

  posix::FileDescriptor output_;
  Child child_;
  std::string text_;
  std::vector<std::string> lines_;
  std::size_t next_ = 0;
};

}  // namespace kr::testing
