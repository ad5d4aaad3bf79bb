// How long the process model takes among many processes. Prints one "NAME VALUE" line for each figure.
//
// With 400 idle processes, three of which are copies of one application, the copies are found by their
// signature:
//
//   process.find.ms        the first time, in a program whose Foundation is up already
//
//   process.find.warm.ms   the median of later times
//
//   process.ps.ms          what "ps -e" takes in the same run, to compare with
//
// With 2,000 processes, 200 of which are applications, with 300 windows under a window manager:
//
//   process.all.first.ms   the first list of all applications that a program asks for, starting the watch
//
//   process.all.ms         the median of later times, when nothing has changed
//
//   process.all.pid.us     one application by its process ID, the mean over all of them
//
//   process.all.change.ms  from the start of a program with a window to the notification, the median
//
//   process.all.ps.ms      what "ps -e" takes in the same run
//
//   process.all.pgrep.ms   what "pgrep -x NAME" takes in the same run
#import <Foundation/Foundation.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#import "library/process/KRProcess.h"
#include "platform/ProcessTable.h"
#include "platform/SystemServices.h"
#include "platform/linux/ProcessBundle.h"
#include "tests/support/Desktop.h"
#import "tests/support/NotificationRecorder.h"
#import "tests/support/RunLoop.h"
#include "tests/support/TestApplication.h"

extern char** environ;  // NOLINT: the C library's

namespace {

using kr::testing::Desktop;
using kr::testing::ScratchFolder;
using kr::testing::TestApplication;

constexpr int kCopies = 3;
constexpr int kFewProcesses = 400;
constexpr int kManyProcesses = 2000;
constexpr int kApplicationsWithWindows = 100;  // three windows each
constexpr int kApplicationsWithout = 100 - kCopies;
constexpr std::uint32_t kSignature = 0x42656E63;  // 'Benc'
constexpr int kRounds = 21;

// Idle processes, ended with the program.
class Processes {
 public:
  ~Processes() {
    for (const pid_t pid : pids_) ::kill(pid, SIGKILL);
    for (const pid_t pid : pids_) ::waitpid(pid, nullptr, 0);
  }

  // Makes a bundle of the name, of which nothing runs, and answers the path of its executable.
  std::string makeBundle(const std::string& name) const {
    const std::string bundle = folder_.folder(name + ".app");
    std::filesystem::copy_file("/bin/sleep", bundle + "/" + name);
    static_cast<void>(folder_.file(name + ".app/Contents/Info.plist",
                                   "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
                                   "<key>CFBundleSignature</key><string>Benc</string></dict></plist>\n"));
    return bundle + "/" + name;
  }

  void start(const std::string& program) {
    std::string name = "sleep";
    std::string seconds = "600";
    char* words[] = {name.data(), seconds.data(), nullptr};
    pid_t pid = 0;
    if (::posix_spawn(&pid, program.c_str(), nullptr, nullptr, words, environ) != 0) {
      std::fputs("cannot start the processes\n", stderr);
      std::exit(1);
    }
    pids_.push_back(pid);
  }

  // Starts others until there are so many.
  void fill(std::size_t count) {
    while (pids_.size() < count) start("/bin/sleep");
  }

 private:
  ScratchFolder folder_;
  std::vector<pid_t> pids_;
};

int findCopies() {
  kr::platform::ProcessTable& table = kr::platform::systemProcessTable();
  int found = 0;
  for (const kr::platform::SerialNumber process : table.all()) {
    const auto record = table.record(process);
    if (record && record->signature == kSignature) ++found;
  }
  return found;
}

template <class Code>
double milliseconds(Code code) {
  const auto start = std::chrono::steady_clock::now();
  code();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size() / 2), values.end());
  return values[values.size() / 2];
}

// Two programs in turn, so that both see the same machine.
struct Medians {
  double own;
  double ps;
  double pgrep;
};

template <class Code>
Medians compare(Code code) {
  std::vector<double> own;
  std::vector<double> ps;
  std::vector<double> pgrep;
  for (int round = 0; round < kRounds; ++round) {
    own.push_back(milliseconds(code));
    ps.push_back(milliseconds([] { static_cast<void>(std::system("ps -e >/dev/null") == 0); }));
    pgrep.push_back(milliseconds([] { static_cast<void>(std::system("pgrep -x no-such-name") == 0); }));
  }
  return {median(own), median(ps), median(pgrep)};
}

void check(bool isRight, const char* what) {
  if (isRight) return;
  std::fprintf(stderr, "not what was started: %s\n", what);
  std::exit(1);
}

// By signature, without a window server.
void measureFind(Processes& processes) {
  const Desktop none({.display = false});
  const std::string copy = processes.makeBundle("X");
  for (int index = 0; index < kCopies; ++index) processes.start(copy);
  processes.fill(kFewProcesses);
  // Reading any bundle brings Foundation up, which takes longer than all that is measured here.
  const std::string other = processes.makeBundle("Other");
  check(kr::platform::processFacts({other, std::filesystem::path(other).parent_path()}, 1).signature ==
            kSignature,
        "a bundle's signature");
  const auto find = [] { check(findCopies() == kCopies, "the copies"); };
  const double first = milliseconds(find);
  const Medians times = compare(find);
  std::printf("process.find.ms %.3f\nprocess.find.warm.ms %.3f\nprocess.ps.ms %.3f\n", first, times.own,
              times.ps);
}

double timeToNotification(const ScratchFolder& folder) {
  kr::testing::NotificationRecorder changes(KRProcessChangeNotification);
  std::vector<double> times;
  for (int round = 0; round < 5; ++round) {
    const NSUInteger before = changes.count();
    std::optional<TestApplication> application;
    times.push_back(milliseconds([&] {
      application.emplace(folder, "Late.app", kr::testing::BundleInformation{},
                          std::vector<std::string>{"window", "Late"});
      check(kr::testing::eventuallyInRunLoop([&] { return changes.count() > before; }), "the launch");
    }));
    application.reset();
    kr::testing::runLoop(0.3);
  }
  return median(times);
}

void measureAll(Processes& processes) {
  const Desktop desktop({.windowManager = true});
  const ScratchFolder folder;
  std::vector<TestApplication> applications;
  const std::string executable = kr::testing::makeBundle(folder, "Window.app");
  for (int index = 0; index < kApplicationsWithWindows; ++index) {
    applications.emplace_back(executable,
                              std::vector<std::string>{"window", "1", "window", "2", "window", "3"});
  }
  const std::string agent = processes.makeBundle("Agent");
  for (int index = 0; index < kApplicationsWithout; ++index) processes.start(agent);
  processes.fill(kManyProcesses - applications.size());
  std::size_t count = 0;
  const auto list = [&] {
    @autoreleasepool {
      count = [[KRProcess allProcesses] count];
    }
  };
  const double first = milliseconds(list);
  // This program is one of them.
  check(count >= kApplicationsWithWindows + kApplicationsWithout + kCopies + 1, "the applications");
  kr::testing::runLoop(0.5);
  const Medians times = compare(list);
  const double byPID = milliseconds([&] {
    @autoreleasepool {
      for (const TestApplication& application : applications) {
        check([KRProcess processWithPID:application.pid()] != nil, "an application");
      }
    }
  });
  std::printf("process.all.first.ms %.3f\nprocess.all.ms %.3f\nprocess.all.pid.us %.1f\n", first, times.own,
              byPID * 1000 / kApplicationsWithWindows);
  std::printf("process.all.change.ms %.3f\nprocess.all.ps.ms %.3f\nprocess.all.pgrep.ms %.3f\n",
              timeToNotification(folder), times.ps, times.pgrep);
}

}  // namespace

int main() {
  @autoreleasepool {
    Processes processes;
    measureFind(processes);
    measureAll(processes);
  }
}
