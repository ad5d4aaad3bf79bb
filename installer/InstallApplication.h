// The ordinary copy of a product into its place. Blocks its caller: install thread. Paths are absolute,
// file-system bytes.
#pragma once

#include <optional>
#include <string>

namespace kr {

// Answers of InstallApplication.
inline constexpr int kInstalled = 0;
inline constexpr int kExistingCopyNotTrashed = 1;
inline constexpr int kCopyFailed = 2;

// Copies the product to the destination: first the items of the wrapper folder into the destination's parent
// folder (or the wrapper as that folder, where it is not there yet), then what is at the destination goes to
// the Trash, then the product is copied. Nothing is touched when a step of these would destroy the source or
// the wrapper, or when there is no product to copy. Logs every failure.
[[nodiscard]] int InstallApplication(const std::string& source, const std::string& destination,
                                     const std::optional<std::string>& wrapper);

}  // namespace kr
