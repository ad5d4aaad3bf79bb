#include "tests/support/ReportingProgram.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <iterator>
#include <stdexcept>

#include "tests/support/Eventually.h"

namespace kr::testing {
namespace {

constexpr double kStartSeconds = 20.0;

}  // namespace

ReportingProgram::ReportingProgram(const std::string& program, const std::vector<std::string>& words) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  output_.reset(ends[0]);
  const posix::FileDescriptor write(ends[1]);
  ::fcntl(output_.get(), F_SETFL, O_NONBLOCK);
  std::vector<std::string> arguments{program, "-output", std::to_string(write.get())};
  arguments.insert(arguments.end(), words.begin(), words.end());
  child_ = Child(arguments, write.get());
  if (!writes("ready", kStartSeconds)) throw std::runtime_error(program + " did not start");
  lines_.clear();
  next_ = 0;
}

void ReportingProgram::read() {
  std::array<char, 4096> buffer{};
  for (ssize_t count = 0; (count = ::read(output_.get(), buffer.data(), buffer.size())) > 0;) {
    text_.append(buffer.data(), static_cast<std::size_t>(count));
  }
  for (std::size_t end = 0; (end = text_.find('\n')) != std::string::npos; text_.erase(0, end + 1)) {
    lines_.push_back(text_.substr(0, end));
  }
}

const std::vector<std::string>& ReportingProgram::lines() {
  read();
  return lines_;
}

bool ReportingProgram::writes(const std::string& start, double seconds) {
  return eventually(
      [&] {
        read();
        while (next_ < lines_.size()) {
          if (lines_[next_++].starts_with(start)) return true;
        }
        return false;
      },
      seconds);
}

bool ReportingProgram::isSilent(double seconds) {
  return !eventually(
      [&] {
        read();
        return next_ < lines_.size();
      },
      seconds);
}

std::size_t ReportingProgram::descriptors() const {
  const std::filesystem::directory_iterator list("/proc/" + std::to_string(child_.pid()) + "/fd");
  return static_cast<std::size_t>(std::distance(begin(list), end(list)));
}

bool ReportingProgram::isRunning() const {
  return ::kill(child_.pid(), 0) == 0;
}

}  // namespace kr::testing
