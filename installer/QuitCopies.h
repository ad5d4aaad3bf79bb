// Asks running copies of the product to quit before its files are replaced, and asks again for a few seconds.
// Blocks its caller: install thread.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace kr {

struct QuitActions {
  // Asks every running copy to quit; does not wait.
  std::function<void()> askToQuit;
  // The name of a copy that still runs; none when there is none.
  std::function<std::optional<std::string>()> stillRunning;
};

// The name of a copy that refused to quit, at the end of all rounds; none when the copy may begin.
[[nodiscard]] std::optional<std::string> quitRunningCopies(const QuitActions& actions);

}  // namespace kr
