#include "benchmarks/text/Comparison.h"

#import <Foundation/Foundation.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace kr::bench {
namespace {

constexpr int kRounds = 15;
constexpr int kFewRounds = 3;
constexpr double kLong = 200;  // milliseconds
constexpr double kShort = 2;   // a way that takes less is run several times in a row

// Of this thread and the programs that it has run: none of the ways has another thread, and what else the
// machine does is not counted.
double cpuMilliseconds() {
  timespec here{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &here);
  rusage programs{};
  ::getrusage(RUSAGE_CHILDREN, &programs);
  double sum = static_cast<double>(here.tv_sec) * 1e3 + static_cast<double>(here.tv_nsec) / 1e6;
  for (const timeval& time : {programs.ru_utime, programs.ru_stime}) {
    sum += static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
  }
  return sum;
}

double milliseconds(const Way& way, int times) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  const double start = cpuMilliseconds();
  for (int time = 0; time < times; ++time) way.run();
  const double elapsed = cpuMilliseconds() - start;
  [pool drain];
  return elapsed / times;
}

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size() / 2), values.end());
  return values[values.size() / 2];
}

}  // namespace

void compare(std::string_view name, const std::vector<Way>& ways) {
  std::vector<std::vector<double>> times(ways.size());
  std::vector<int> inARow(ways.size(), 1);
  // The first round warms up, and says how often each is run.
  for (std::size_t way = 0; way < ways.size(); ++way) {
    const double first = std::max(milliseconds(ways[way], 1), 1e-5);
    inARow[way] = std::clamp(static_cast<int>(kShort / first), 1, 10000);
    if (first > kLong) inARow[way] = 0;
  }
  for (int round = 0; round < kRounds; ++round) {
    for (std::size_t way = 0; way < ways.size(); ++way) {
      if (inARow[way] == 0 && round >= kFewRounds) continue;
      times[way].push_back(milliseconds(ways[way], std::max(inARow[way], 1)));
    }
  }
  double fastestOther = 0;
  for (std::size_t way = 0; way < ways.size(); ++way) {
    const double time = median(times[way]);
    std::printf("text.%.*s.%s.ms %.4f\n", static_cast<int>(name.size()), name.data(), ways[way].name.c_str(),
                time);
    if (way > 0 && (fastestOther == 0 || time < fastestOther)) fastestOther = time;
  }
  if (ways.size() > 1) {
    std::printf("text.%.*s.ratio %.3f\n", static_cast<int>(name.size()), name.data(),
                median(times[0]) / fastestOther);
  }
  std::fflush(stdout);
}

void require(bool isSame, std::string_view name) {
  if (isSame) return;
  std::fprintf(stderr, "text.%.*s: not the same result\n", static_cast<int>(name.size()), name.data());
  std::exit(1);
}

}  // namespace kr::bench
