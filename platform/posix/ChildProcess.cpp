#include "platform/posix/ChildProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>
#include <thread>
#include <utility>

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/LastError.h"
#include "platform/posix/Spawn.h"

namespace kr::posix {
namespace {

constexpr int kFirstOther = STDERR_FILENO + 1;

class Actions {
 public:
  Actions() { ::posix_spawn_file_actions_init(&actions_); }
  ~Actions() { ::posix_spawn_file_actions_destroy(&actions_); }
  Actions(const Actions&) = delete;
  Actions& operator=(const Actions&) = delete;

  [[nodiscard]] posix_spawn_file_actions_t* get() { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

class Attributes {
 public:
  explicit Attributes(bool ownGroup) {
    ::posix_spawnattr_init(&attributes_);
    sigset_t signals;
    sigfillset(&signals);
    ::posix_spawnattr_setsigdefault(&attributes_, &signals);
    sigemptyset(&signals);
    ::posix_spawnattr_setsigmask(&attributes_, &signals);
    int flags = POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK;
    if (ownGroup) {
      ::posix_spawnattr_setpgroup(&attributes_, 0);
      flags |= POSIX_SPAWN_SETPGROUP;
    }
    ::posix_spawnattr_setflags(&attributes_, static_cast<short>(flags));
  }
  ~Attributes() { ::posix_spawnattr_destroy(&attributes_); }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;

  [[nodiscard]] posix_spawnattr_t* get() { return &attributes_; }

 private:
  posix_spawnattr_t attributes_{};
};

std::error_code asError(int error) {
  return {error, std::generic_category()};
}

// A copy out of the way of the standard streams, whose numbers files have when the caller had closed them.
FileDescriptor copyOf(int stream) {
  const int copy = stream < 0 ? -1 : ::fcntl(stream, F_DUPFD_CLOEXEC, kFirstOther);
  if (copy >= 0) return FileDescriptor(copy);
  const FileDescriptor null(::open("/dev/null", O_RDWR | O_CLOEXEC));
  return FileDescriptor(::fcntl(null.get(), F_DUPFD_CLOEXEC, kFirstOther));
}

// Valid as long as the texts are.
std::vector<char*> pointers(const std::vector<std::string>& texts) {
  std::vector<char*> result;
  result.reserve(texts.size() + 1);
  for (const std::string& text : texts) result.push_back(const_cast<char*>(text.c_str()));
  result.push_back(nullptr);
  return result;
}

pid_t waitFor(pid_t pid, int options) noexcept {
  pid_t result = 0;
  do {
    result = ::waitpid(pid, nullptr, options);
  } while (result < 0 && errno == EINTR);
  return result;
}

// Without a thread to wait on, a zombie is left.
void waitElsewhere(pid_t pid) noexcept {
  try {
    std::thread([pid] { waitFor(pid, 0); }).detach();
  } catch (const std::system_error&) {
  }
}

}  // namespace

ChildProcess::~ChildProcess() {
  if (isRunning()) waitElsewhere(pid_);
}

std::error_code ChildProcess::start(const ChildSetup& setup) {
  if (setup.words.empty() || setup.words.front().empty()) return asError(ENOENT);
  const FileDescriptor streams[] = {copyOf(setup.input), copyOf(setup.output), copyOf(setup.errors)};
  Actions actions;
  Attributes attributes(setup.ownGroup);
  for (int number = STDIN_FILENO; number < kFirstOther; ++number) {
    if (!streams[number]) return lastError();
    ::posix_spawn_file_actions_adddup2(actions.get(), streams[number].get(), number);
  }
  closeAllOthers(*actions.get(), *attributes.get());
  const std::vector<char*> words = pointers(setup.words);
  std::vector<char*> ownEnvironment;
  if (setup.environment) ownEnvironment = pointers(*setup.environment);
  const int error =
      spawnInFolder(pid_, setup.folder ? setup.folder->c_str() : nullptr, *actions.get(), *attributes.get(),
                    words.data(), setup.environment ? ownEnvironment.data() : environment());
  if (error != 0) pid_ = 0;
  leadsGroup_ = setup.ownGroup;
  return asError(error);
}

bool ChildProcess::isRunning() noexcept {
  if (pid_ != 0 && waitFor(pid_, WNOHANG) != 0) pid_ = 0;
  return pid_ != 0;
}

// While it has not been waited for, neither its ID nor that of its group is anybody else's.
void ChildProcess::terminate() noexcept {
  if (isRunning()) ::kill(leadsGroup_ ? -pid_ : pid_, SIGTERM);
}

pid_t ChildProcess::release() noexcept {
  return std::exchange(pid_, 0);
}

}  // namespace kr::posix
