#include "benchmarks/text/Comparison.h"

#import <Foundation/Foundation.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace kr::bench {
namespace {

constexpr int kRounds = 15;
constexpr int kFewRounds = 3;
constexpr double kLong = 200;  // milliseconds
constexpr double kShort = 2;   // a way that takes less is run several times in a row

double milliseconds(const Way& way, int times) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  const auto start = std::chrono::steady_clock::now();
  for (int time = 0; time < times; ++time) way.run();
  const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - start;
  [pool drain];
  return elapsed.count() / times;
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
