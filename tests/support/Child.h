// A child process of the test. It is ended and reaped at the end of the scope unless it has ended before; it
// is asked to end, too, when the thread that has started it ends in any other way.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace kr::testing {

class Child {
 public:
  Child() = default;

  // Starts the program at a path, or found by its name; arguments[0] is the program. `descriptor` is handed
  // on to the child under the same number. Throws std::runtime_error where it cannot be started.
  explicit Child(const std::vector<std::string>& arguments, std::optional<int> descriptor = std::nullopt);
  Child(Child&& other) noexcept;
  Child& operator=(Child&& other) noexcept;
  ~Child();

  [[nodiscard]] pid_t pid() const { return pid_; }

  void signal(int number) const;

  // Takes the child's end: its wait status. Waits at most so long; none when it still runs, and when somebody
  // else in this program has taken it, as the toolkit takes that of any child once it has had one of its own.
  std::optional<int> wait(double seconds);

  // Asks it to end, waits a little, then kills it.
  void stop() noexcept;

 private:
  pid_t pid_ = 0;
};

}  // namespace kr::testing
