#include "platform/linux/ProcFS.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdio>
#include <memory>

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/Files.h"

namespace kr::platform::procfs {
namespace {

constexpr std::string_view kDeleted = " (deleted)";

// Numbers of the fields after the program's name; the state is field 3.
constexpr int kStateField = 3;
constexpr int kParentField = 4;
constexpr int kUserTicksField = 14;
constexpr int kStartTicksField = 22;

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

// "/proc/PID/FILE". On the stack: a list of the applications makes one for every process of the system.
class ProcessPath {
 public:
  ProcessPath(pid_t pid, const char* file) {
    std::snprintf(text_.data(), text_.size(), "/proc/%d/%s", static_cast<int>(pid), file);
  }
  [[nodiscard]] const char* c_str() const { return text_.data(); }

 private:
  std::array<char, 32> text_;
};

template <class Number>
std::optional<Number> number(std::string_view text) {
  Number value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

}  // namespace

std::optional<Status> parseStatus(std::string_view text) {
  // The name stands in parentheses and may hold some itself, so it ends at the last one.
  const std::size_t nameEnd = text.rfind(')');
  if (nameEnd == std::string_view::npos) return std::nullopt;
  std::string_view rest = text.substr(nameEnd + 1);
  Status result;
  for (int field = kStateField; field <= kStartTicksField; ++field) {
    const std::size_t start = rest.find_first_not_of(" \n");
    if (start == std::string_view::npos) return std::nullopt;
    rest.remove_prefix(start);
    const std::string_view word = rest.substr(0, rest.find_first_of(" \n"));
    rest.remove_prefix(word.size());
    if (field == kStateField) {
      result.state = word.front();
    } else if (field == kParentField) {
      const auto parent = number<pid_t>(word);
      if (!parent) return std::nullopt;
      result.parent = *parent;
    } else if (field == kUserTicksField || field == kStartTicksField) {
      const auto ticks = number<std::uint64_t>(word);
      if (!ticks) return std::nullopt;
      (field == kUserTicksField ? result.userTicks : result.startTicks) = *ticks;
    }
  }
  return result;
}

std::optional<Status> status(pid_t pid) {
  if (pid <= 0) return std::nullopt;
  const posix::FileDescriptor file(::open(ProcessPath(pid, "stat").c_str(), O_RDONLY | O_CLOEXEC));
  if (!file) return std::nullopt;
  // The kernel hands the whole line out at once.
  std::array<char, 4096> buffer;
  ssize_t count = 0;
  do {
    count = ::read(file.get(), buffer.data(), buffer.size());
  } while (count < 0 && errno == EINTR);
  if (count <= 0) return std::nullopt;
  return parseStatus({buffer.data(), static_cast<std::size_t>(count)});
}

std::vector<pid_t> processIDs() {
  std::vector<pid_t> list;
  const std::unique_ptr<DIR, CloseFolder> folder(::opendir("/proc"));
  if (!folder) return list;
  while (const dirent* entry = ::readdir(folder.get())) {
    if (const auto pid = number<pid_t>(entry->d_name); pid && *pid > 0) list.push_back(*pid);
  }
  return list;
}

std::optional<std::string> executable(pid_t pid) {
  if (pid <= 0) return std::nullopt;
  std::array<char, PATH_MAX + 1> buffer;
  const ssize_t length = ::readlink(ProcessPath(pid, "exe").c_str(), buffer.data(), buffer.size());
  if (length <= 0 || static_cast<std::size_t>(length) >= buffer.size()) return std::nullopt;
  std::string path(buffer.data(), static_cast<std::size_t>(length));
  // A file may really be called so; then it is there.
  if (path.ends_with(kDeleted) && !files::itemExists(path)) path.erase(path.size() - kDeleted.size());
  return path;
}

double ticksPerSecond() {
  static const double ticks = static_cast<double>(::sysconf(_SC_CLK_TCK));
  return ticks;
}

std::optional<double> bootTime() {
  const std::optional<std::string> text = files::contents("/proc/stat");
  if (!text) return std::nullopt;
  constexpr std::string_view kKey = "\nbtime ";
  const std::size_t at = text->find(kKey);
  if (at == std::string::npos) return std::nullopt;
  const std::size_t start = at + kKey.size();
  const auto seconds =
      number<long long>(std::string_view(*text).substr(start, text->find('\n', start) - start));
  return seconds ? std::optional(static_cast<double>(*seconds)) : std::nullopt;
}

SerialNumber serialNumber(pid_t pid, const Status& status) {
  return {static_cast<std::uint32_t>(status.startTicks), static_cast<std::uint32_t>(pid)};
}

std::optional<SerialNumber> serialNumber(pid_t pid) {
  const std::optional<Status> found = status(pid);
  if (!found || found->hasEnded()) return std::nullopt;
  return serialNumber(pid, *found);
}

pid_t processID(SerialNumber process) {
  return static_cast<pid_t>(process.low);
}

std::optional<pid_t> runningProcessID(SerialNumber process) {
  const pid_t pid = processID(process);
  return serialNumber(pid) == process ? std::optional(pid) : std::nullopt;
}

}  // namespace kr::platform::procfs
