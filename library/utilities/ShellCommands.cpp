#include "library/utilities/ShellCommands.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <exception>

#include "platform/Clock.h"
#include "platform/Log.h"
#include "platform/Paths.h"
#include "platform/Services.h"
#include "platform/StandardFolders.h"
#include "platform/UTF8Bytes.h"
#include "platform/posix/Accounts.h"
#include "platform/posix/ChildProcess.h"
#include "platform/posix/FileDescriptor.h"
#include "platform/posix/Files.h"
#include "platform/posix/LastError.h"
#include "platform/posix/Pipe.h"

namespace kr {
namespace {

constexpr double kPollInterval = 0.001;
constexpr std::size_t kPipeReadSize = 1 << 16;
constexpr const char* kShell = "/bin/sh";

// The file that a script writes into: where tmpnam() would put it, but nobody else can have made it.
class OutputFile {
 public:
  OutputFile()
      : path_(paths::joined(P_tmpdir, "script-output-" + std::to_string(::getpid()) + "-XXXXXX")),
        file_(::mkostemp(path_.data(), O_CLOEXEC)),
        error_(file_ ? std::error_code() : posix::lastError()) {}

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] int descriptor() const { return file_.get(); }
  // Why there is no file.
  [[nodiscard]] std::error_code error() const { return error_; }

 private:
  std::string path_;
  posix::FileDescriptor file_;
  std::error_code error_;
};

std::u16string failed(std::string_view name, const std::string& reason) {
  return platform::utf16FromBytes(formatted("script %@ failed: %@", name, reason));
}

std::u16string failed(std::string_view name, const std::string& what, std::error_code error) {
  return failed(name, "could not " + what + ": " + error.message());
}

// "~user" stands for that user's home folder, where there is such a user.
std::string withoutTilde(const std::string& path, const std::string& home) {
  const std::size_t end = std::min(path.find('/'), path.size());
  if (!path.starts_with('~') || end == 1) return paths::expandingTilde(path, home);
  const std::optional<std::string> other = posix::homeOf(path.substr(1, end - 1));
  return other ? paths::joined(*other, path.substr(end)) : path;
}

void waitForEnd(posix::ChildProcess& child, const ShellScript& script, std::string_view name) {
  platform::Clock& clock = *platform::services().clock;
  const double start = clock.monotonicSeconds();
  while (child.isRunning()) {
    // Time counts in single precision, which for some limits makes one poll more or less.
    const auto elapsed = static_cast<float>(clock.monotonicSeconds() - start);
    if (static_cast<double>(elapsed) > script.timeout) {
      log("script timeout: %@ %@", name, script.parametersText);
      child.terminate();
      break;
    }
    clock.sleep(kPollInterval);
  }
  child.terminate();
}

// As much as is there now: who has not ended may write on for ever.
std::optional<std::string> bytesOf(const OutputFile& output) {
  struct stat status {};
  if (::fstat(output.descriptor(), &status) != 0) return std::nullopt;
  return files::firstBytes(output.path(), static_cast<std::size_t>(status.st_size));
}

std::optional<std::u16string> textOf(const OutputFile& output) {
  const std::optional<std::string> bytes = bytesOf(output);
  std::optional<std::u16string> text = bytes ? platform::utf16FromUTF8(*bytes) : std::nullopt;
  if (!text) log("error getting result: %@", bytes ? "not UTF-8" : posix::lastError().message());
  return text;
}

// False when it cannot be read.
bool readToEnd(int pipe, std::string& bytes) {
  for (;;) {
    const std::size_t length = bytes.size();
    bytes.resize(length + kPipeReadSize);
    const ssize_t count = ::read(pipe, bytes.data() + length, kPipeReadSize);
    bytes.resize(length + static_cast<std::size_t>(count > 0 ? count : 0));
    if (count == 0) return true;
    if (count < 0 && errno != EINTR) return false;
  }
}

std::optional<std::u16string> run(const ShellScript& script) {
  const std::string home = platform::services().folders->home();
  const std::string path = withoutTilde(script.path, home);
  const std::string_view name = paths::lastComponent(path);
  if (script.fault) return failed(name, *script.fault);
  const OutputFile output;
  if (output.error()) return failed(name, "create " + output.path(), output.error());
  posix::ChildProcess child;
  posix::ChildSetup setup{.words = {path},
                          .folder = home,
                          .output = output.descriptor(),
                          .errors = output.descriptor(),
                          .ownGroup = true};
  if (script.parameters) {
    setup.words.insert(setup.words.end(), script.parameters->begin(), script.parameters->end());
  }
  // The file of a script that does not start stays.
  if (const std::error_code error = child.start(setup)) return failed(name, "start " + path, error);
  waitForEnd(child, script, name);
  std::optional<std::u16string> text = textOf(output);
  ::unlink(output.path().c_str());
  return text;
}

}  // namespace

std::optional<std::u16string> runShellScript(const ShellScript& script) {
  try {
    return run(script);
  } catch (const std::exception& error) {
    return failed(paths::lastComponent(script.path), error.what());
  }
}

CommandResult runShellCommand(const std::string& commandLine) {
  posix::Pipe pipe;
  if (const std::error_code error = posix::makePipe(pipe)) return {.output = {}, .error = error};
  posix::ChildProcess child;
  const std::error_code error = child.start(
      {.words = {kShell, "-c", commandLine}, .input = STDIN_FILENO, .output = pipe.writing.get()});
  if (error) return {.output = {}, .error = error};
  pipe.writing.reset();
  std::string bytes;
  if (!readToEnd(pipe.reading.get(), bytes)) return {};
  return {.output = platform::utf16FromUTF8(bytes), .error = {}};
}

}  // namespace kr
