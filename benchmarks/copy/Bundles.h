// Generated products to copy. The same case is the same tree every time.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>

namespace kr::bench {

struct Bundle {
  const char* name;
  int files;
  std::uint64_t bytes;     // of all of them together
  bool hasLargeLibraries;  // three quarters of the bytes are in ten files
};

inline constexpr std::array<Bundle, 3> kBundles{{{"many", 20000, 40UL << 20, false},
                                                 {"typical", 1500, 53UL << 20, false},
                                                 {"big", 2060, 600UL << 20, true}}};

// Makes the tree at `root`, which must not exist; ends the program where it cannot.
void makeBundle(const Bundle& bundle, const std::filesystem::path& root);

}  // namespace kr::bench
