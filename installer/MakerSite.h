// The maker's web site.
#pragma once

#include <string>
#include <string_view>

namespace kr {

// Set by the maker: scheme and host, without a slash at the end.
inline constexpr std::string_view kMakerSite = "https://www.velmora.example";

inline constexpr std::string_view kArchivePath = "/downloads/archive/";

// The page with all versions of all products.
[[nodiscard]] inline std::string softwareArchivePage() {
  return std::string(kMakerSite).append(kArchivePath);
}

}  // namespace kr
