// Puts a product in its place: what comes with it first, then the copy that is there goes to the Trash, then
// the product is copied. Needs the rights to write there; asks for none.
#pragma once

#include <optional>
#include <string>

namespace kr {

// Answers of InstallApplication.
inline constexpr int kInstalled = 0;
inline constexpr int kExistingCopyNotTrashed = 1;
inline constexpr int kCopyFailed = 2;

// Copies the product at `source` to `destination`, the full path that it will have, and the entries of the
// folder `wrapper` beside it. Where the destination's parent folder does not exist, the wrapper becomes it.
// Each failure is logged. Nothing is rolled back, but what could destroy the source or the wrapper is refused
// before anything is touched. Paths are file-system bytes. Blocks its caller: install thread.
[[nodiscard]] int InstallApplication(const std::string& source, const std::string& destination,
                                     const std::optional<std::string>& wrapper);

}  // namespace kr
