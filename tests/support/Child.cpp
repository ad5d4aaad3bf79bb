#include "tests/support/Child.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "platform/posix/FileDescriptor.h"
#include "tests/support/Eventually.h"

namespace kr::testing {

Child::Child(const std::vector<std::string>& arguments, std::optional<int> descriptor) {
  std::vector<char*> words;
  words.reserve(arguments.size() + 1);
  for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);
  // Reads the error of a start that fails, or the end of the pipe from one that does not.
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  const posix::FileDescriptor read(ends[0]);
  posix::FileDescriptor write(ends[1]);
  const pid_t parent = ::getpid();
  pid_ = ::fork();
  if (pid_ == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != parent) ::_exit(1);
    if (descriptor) ::fcntl(*descriptor, F_SETFD, 0);
    ::execvp(words[0], words.data());
    const int error = errno;
    static_cast<void>(::write(ends[1], &error, sizeof error) == 0);
    ::_exit(1);
  }
  write.reset();
  int error = pid_ < 0 ? errno : 0;
  if (pid_ > 0 && ::read(read.get(), &error, sizeof error) == sizeof error) ::waitpid(pid_, nullptr, 0);
  if (error != 0) {
    pid_ = 0;
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
  pid_t answer = 0;
  const bool ended = eventually([&] { return (answer = ::waitpid(pid_, &status, WNOHANG)) != 0; }, seconds);
  if (!ended) return std::nullopt;
  const bool isOurs = answer == pid_;
  pid_ = 0;
  return isOurs ? std::optional(status) : std::nullopt;
}

void Child::stop() noexcept {
  if (pid_ <= 0) return;
  signal(SIGTERM);
  signal(SIGCONT);
  if (wait(1.0) || pid_ == 0) return;
  signal(SIGKILL);
  if (!wait(5.0)) pid_ = 0;
}

}  // namespace kr::testing
