#include "platform/Program.h"

#include <unistd.h>

#include "platform/Paths.h"
#include "platform/SystemServices.h"
#include "platform/linux/ProcFS.h"
#include "platform/posix/Files.h"

namespace kr::platform {
namespace {

constexpr std::string_view kExecutableFolder = "/Contents/MacOS";
constexpr std::string_view kTracer = "\nTracerPid:\t";

class RunningProgram final : public Program {
 public:
  // Foundation decodes the command line in the locale's encoding, which loses bytes; the kernel keeps it as
  // it was.
  std::vector<std::string> arguments() override {
    std::vector<std::string> words;
    const std::string line = files::contents("/proc/self/cmdline").value_or("");
    for (std::size_t start = 0; start < line.size();) {
      const std::size_t end = line.find('\0', start);
      words.push_back(line.substr(start, end - start));
      if (end == std::string::npos) break;
      start = end + 1;
    }
    return words;
  }

  std::string bundlePath() override {
    const std::string executable = procfs::executable(::getpid()).value_or("");
    std::string_view folder = paths::parent(executable);
    if (folder.ends_with(kExecutableFolder)) folder.remove_suffix(kExecutableFolder.size());
    return std::string(folder);
  }

  bool isDebugged() override {
    const std::string status = files::contents("/proc/self/status").value_or("");
    const std::size_t tracer = status.find(kTracer);
    return tracer != std::string::npos && !status.substr(tracer + kTracer.size()).starts_with("0\n");
  }
};

}  // namespace

Program& systemProgram() noexcept {
  static RunningProgram& program = *new RunningProgram;
  return program;
}

}  // namespace kr::platform
