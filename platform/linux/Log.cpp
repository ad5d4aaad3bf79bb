#include "platform/Log.h"

#include <sys/syscall.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>

#include "platform/Paths.h"
#include "platform/SystemServices.h"
#include "platform/posix/Files.h"

namespace kr::platform {
namespace {

// Writes lines in the form of the system's logger, "2026-01-31 12:00:00.123 Name[pid:thread] text", but takes
// bytes of any kind: the logger of Foundation goes through the locale's encoding and loses what does not fit
// in.
class StandardErrorLog final : public LogSink {
 public:
  StandardErrorLog() : name_(paths::lastComponent(files::resolved("/proc/self/exe").value_or("?"))) {}

  void line(std::string_view text) noexcept override {
    timeval now{};
    ::gettimeofday(&now, nullptr);
    tm local{};
    ::localtime_r(&now.tv_sec, &local);
    std::array<char, 32> time{};
    const std::size_t length = ::strftime(time.data(), time.size(), "%Y-%m-%d %H:%M:%S", &local);
    const std::string_view seconds(time.data(), length);
    write(formatted("%@.%03d %@[%d:%ld] %@\n", seconds, now.tv_usec / 1000, name_, ::getpid(),
                    ::syscall(SYS_gettid), text));
  }

 private:
  // One call for the whole line, so that lines of several threads and processes do not mix.
  static void write(std::string_view bytes) noexcept {
    while (!bytes.empty()) {
      const ssize_t count = ::write(STDERR_FILENO, bytes.data(), bytes.size());
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) return;
      bytes.remove_prefix(static_cast<std::size_t>(count));
    }
  }

  std::string name_;
};

}  // namespace

LogSink& systemLog() noexcept {
  static StandardErrorLog& log = *new StandardErrorLog;
  return log;
}

}  // namespace kr::platform
