// One child process. Its program is started as it is named: no shell, no search in folders. It has nothing of
// the caller open but its standard streams, and hears every signal as a new program does. One thread at a
// time.
//
//   posix::ChildProcess child;
//   if (const std::error_code error = child.start({.words = {"/bin/date"}, .output = file.get()})) ...
#pragma once

#include <sys/types.h>
#include <unistd.h>

#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace kr::posix {

struct ChildSetup {
  std::vector<std::string> words;                       // the command line, the program's path first
  std::optional<std::string> folder;                    // working folder; none: the caller's
  std::optional<std::vector<std::string>> environment;  // of "NAME=value"; none: the caller's
  // Descriptors of the caller that become the standard streams; one that is not open is the null device.
  int input = -1;
  int output = STDOUT_FILENO;
  int errors = STDERR_FILENO;
  bool ownGroup = false;  // whether what it starts is ended along with it
};

class ChildProcess {
 public:
  ChildProcess() = default;
  // A child that still runs goes on, and is no zombie when it ends.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  // Once. Returns when the program runs in the child, or why it does not: then there is no child.
  [[nodiscard]] std::error_code start(const ChildSetup& setup);

  // False before the start, and once it has ended; its end has then been taken. A child that somebody else in
  // the program has waited for has ended.
  [[nodiscard]] bool isRunning() noexcept;

  // Asks it to end, with its group where it has one of its own. Nothing for a child that has ended.
  void terminate() noexcept;

  // Leaves its end to the caller, who has to wait for it; 0 without a child.
  [[nodiscard]] pid_t release() noexcept;

 private:
  pid_t pid_ = 0;
  bool leadsGroup_ = false;
};

}  // namespace kr::posix
