#include "tests/support/Child.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>
#include <system_error>
#include <utility>

#include "tests/support/Eventually.h"

extern char** environ;  // NOLINT: the C library's

namespace kr::testing {

Child::Child(const std::vector<std::string>& arguments, std::optional<int> descriptor) {
  std::vector<char*> words;
  words.reserve(arguments.size() + 1);
  for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  // A descriptor that is duplicated onto itself stays open in the child.
  if (descriptor) ::posix_spawn_file_actions_adddup2(&actions, *descriptor, *descriptor);
  const int error = ::posix_spawnp(&pid_, words[0], &actions, nullptr, words.data(), environ);
  ::posix_spawn_file_actions_destroy(&actions);
  if (error != 0) {
    throw std::runtime_error("cannot start " + arguments.front() + ": " +
                             std::generic_category().message(error));
  }
}

Child::Child(Child&& other) noexcept : pid_(std::exchange(other.pid_, 0)) {}

Child& Child::operator=(Child&& other) noexcept {
  if (this != &other) {
    stop();
    pid_ = std::exchange(other.pid_, 0);
  }
  return *this;
}

Child::~Child() {
  stop();
}

void Child::signal(int number) const {
  if (pid_ > 0) ::kill(pid_, number);
}

std::optional<int> Child::wait(double seconds) {
  if (pid_ <= 0) return std::nullopt;
  int status = 0;
  const bool ended = eventually([&] { return ::waitpid(pid_, &status, WNOHANG) == pid_; }, seconds);
  if (!ended) return std::nullopt;
  pid_ = 0;
  return status;
}

void Child::stop() noexcept {
  if (pid_ <= 0) return;
  signal(SIGTERM);
  signal(SIGCONT);
  if (wait(1.0)) return;
  signal(SIGKILL);
  if (!wait(5.0)) pid_ = 0;
}

}  // namespace kr::testing
