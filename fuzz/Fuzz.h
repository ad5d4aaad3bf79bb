// What every fuzzer needs: its input as text, and a rule that ends the program when the input breaks it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace kr::fuzz {

inline std::string_view text(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// The input as the kernel hands a list of words out: each ends at a zero byte.
inline std::vector<std::string> words(std::string_view input) {
  std::vector<std::string> list;
  for (std::size_t start = 0; start <= input.size();) {
    const std::size_t end = std::min(input.find('\0', start), input.size());
    list.emplace_back(input.substr(start, end - start));
    start = end + 1;
  }
  return list;
}

inline void require(bool holds, const char* rule) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", rule);
  std::abort();
}

}  // namespace kr::fuzz
