// A program whose system calls of some kinds wait for the test: it may look at the disk, change it, and then
// let the call proceed, fail, or be the program's last. The program is started like by anybody else, and
// knows nothing of it.
//
//   const int status = watched({"/bin/rm", file}, {SYS_unlinkat}, [](const SystemCall& call) {
//     return call.count == 1 ? Answer::fail(EIO) : Answer::proceed();
//   });
#pragma once

#include <sys/types.h>

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace kr::testing {

struct SystemCall {
  int number;
  int count;  // of the calls that have waited so far, with this one
  std::array<std::uint64_t, 6> arguments;
  pid_t thread;

  // The path that the descriptor with this argument's number stands for; the text at the address.
  [[nodiscard]] std::string fileAt(std::size_t argument) const;
  [[nodiscard]] std::string textAt(std::size_t argument) const;
};

struct Answer {
  enum class Kind { proceed, fail, kill } kind = Kind::proceed;
  int error = 0;
  std::int64_t value = 0;

  static Answer proceed() { return {}; }
  static Answer fail(int error) { return {Kind::fail, error, 0}; }
  // For calls that tell a failure by what they answer.
  static Answer failWith(std::int64_t value) { return {Kind::fail, 0, value}; }
  static Answer kill() { return {Kind::kill, 0, 0}; }
};

// Runs the program at the path words[0] to its end; answers its wait status. `decide` is called on the
// calling thread for each call of one of the kinds; `prepare` in the new process before the program. Throws
// std::runtime_error where the system cannot do this.
[[nodiscard]] int watched(const std::vector<std::string>& words, const std::vector<int>& kinds,
                          const std::function<Answer(const SystemCall&)>& decide,
                          const std::function<void()>& prepare = {});

}  // namespace kr::testing
