// Measures several ways to the same result in turn, and prints what each takes.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kr::bench {

struct Way {
  std::string name;           // "ours", or whose other way it is
  std::function<void()> run;  // does it once
};

// Prints "text.CASE.WAY.ms" for each, the median of its runs, and "text.CASE.ratio": the first way's time
// divided by that of the fastest other one. A way that takes long is run less often.
void compare(std::string_view name, const std::vector<Way>& ways);

// Ends the program where two ways have not led to the same result.
void require(bool isSame, std::string_view name);

}  // namespace kr::bench
