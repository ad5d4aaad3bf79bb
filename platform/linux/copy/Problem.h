// What went wrong at one item of a tree. Whoever walks the tree knows the item's path and makes a Failure of
// it.
#pragma once

#include <cerrno>
#include <optional>

namespace kr::platform::copy {

enum class Side { source, destination };

struct Problem {
  const char* step;  // a verb phrase
  int error;         // errno
  Side side = Side::source;
};

using Outcome = std::optional<Problem>;

[[nodiscard]] inline Problem problem(const char* step, Side side = Side::source) noexcept {
  return {step, errno, side};
}

}  // namespace kr::platform::copy
