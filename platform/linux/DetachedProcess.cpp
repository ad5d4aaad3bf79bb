#include "platform/linux/DetachedProcess.h"

#include <fcntl.h>
#include <linux/close_range.h>
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/LastError.h"
#include "platform/posix/Pipe.h"

namespace kr::platform {
namespace {

using posix::lastError;

// Only what is safe between fork and exec in a program with threads: system calls, no memory.

void becomeProgram(char* const* words, const char* folder, int errorPipe) {
  // Out of the way of the standard streams, whose numbers the pipe has when the caller had closed them.
  errorPipe = ::fcntl(errorPipe, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  for (int signal = 1; signal < NSIG; ++signal) ::signal(signal, SIG_DFL);
  sigset_t none;
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
  const int null = ::open("/dev/null", O_RDWR);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::dup2(null, stream);
  // The error pipe closes itself when the program starts, and so does everything else that the caller has
  // open.
  ::syscall(SYS_close_range, STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
  if (::chdir(folder) != 0 && ::chdir("/") != 0) ::_exit(1);
  ::execve(words[0], words, environ);
  const int error = errno;
  (void)!::write(errorPipe, &error, sizeof error);
  ::_exit(1);
}

// Forks twice, so that the program is no child of the caller, and reports through the pipe what went wrong.
void becomeParentOfProgram(char* const* words, const char* folder, int errorPipe) {
  ::setsid();
  const pid_t program = ::fork();
  if (program == 0) becomeProgram(words, folder, errorPipe);
  if (program < 0) {
    const int error = errno;
    (void)!::write(errorPipe, &error, sizeof error);
  }
  ::_exit(0);
}

template <class Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

}  // namespace

std::error_code startDetached(const std::vector<std::string>& words, const std::string& folder) {
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (const std::string& word : words) pointers.push_back(const_cast<char*>(word.c_str()));
  pointers.push_back(nullptr);

  posix::Pipe pipe;
  if (const std::error_code error = posix::makePipe(pipe)) return error;

  const pid_t child = ::fork();
  if (child < 0) return lastError();
  if (child == 0) becomeParentOfProgram(pointers.data(), folder.c_str(), pipe.writing.get());
  pipe.writing.reset();

  int status = 0;
  uninterrupted([&] { return ::waitpid(child, &status, 0); });
  int error = 0;
  const ssize_t count = uninterrupted([&] { return ::read(pipe.reading.get(), &error, sizeof error); });
  return count == sizeof error ? std::error_code(error, std::generic_category()) : std::error_code();
}

}  // namespace kr::platform
