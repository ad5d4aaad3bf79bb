// How long it takes to find the running copies of a product by its signature among many processes. Starts 400
// idle processes, three of which are copies of one application, and prints one "NAME VALUE" line for each
// figure.
//
//   process.find.ms       the first time, in a program whose Foundation is up already, as an application's is
//   process.find.warm.ms  the median of later times
//   process.ps.ms         what "ps -e" takes in the same run, to compare with
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/ProcessTable.h"
#include "platform/SystemServices.h"
#include "platform/linux/ProcessBundle.h"

extern char** environ;  // NOLINT: the C library's

namespace {

constexpr int kProcesses = 400;
constexpr int kCopies = 3;
constexpr std::uint32_t kSignature = 0x42656E63;  // 'Benc'
constexpr int kRounds = 21;

class Processes {
 public:
  Processes() {
    std::string path = "/var/tmp/kr-bench.XXXXXX";
    if (::mkdtemp(path.data()) == nullptr) std::exit(1);
    folder_ = path;
    const std::filesystem::path bundle = makeBundle("X");
    for (int index = 0; index < kProcesses; ++index) {
      const bool isCopy = index % (kProcesses / kCopies) == 0 && index / (kProcesses / kCopies) < kCopies;
      start(isCopy ? (bundle / "X").string() : "/bin/sleep");
    }
  }

  ~Processes() {
    for (const pid_t pid : pids_) ::kill(pid, SIGKILL);
    for (const pid_t pid : pids_) ::waitpid(pid, nullptr, 0);
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  // Makes a bundle of the name and answers its path.
  std::filesystem::path makeBundle(const std::string& name) const {
    const std::filesystem::path bundle = folder_ / (name + ".app");
    std::filesystem::create_directories(bundle / "Contents");
    std::filesystem::copy_file("/bin/sleep", bundle / name);
    std::ofstream(bundle / "Contents/Info.plist")
        << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
           "<key>CFBundleSignature</key><string>Benc</string></dict></plist>\n";
    return bundle;
  }

  [[nodiscard]] bool areAllRunning() const { return pids_.size() == kProcesses; }

 private:
  void start(const std::string& program) {
    std::string name = "sleep";
    std::string seconds = "600";
    char* words[] = {name.data(), seconds.data(), nullptr};
    pid_t pid = 0;
    if (::posix_spawn(&pid, program.c_str(), nullptr, nullptr, words, environ) == 0) pids_.push_back(pid);
  }

  std::filesystem::path folder_;
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

}  // namespace

int main() {
  const Processes processes;
  if (!processes.areAllRunning()) {
    std::fputs("cannot start the processes\n", stderr);
    return 1;
  }
  // Reading any bundle brings Foundation up, which takes longer than all that is measured here.
  const std::string other = processes.makeBundle("Other");
  bool isRight = kr::platform::processFacts({other + "/Other", other}, 1).signature == kSignature;
  const auto find = [&] { isRight = findCopies() == kCopies && isRight; };
  const double first = milliseconds(find);
  std::vector<double> warm;
  std::vector<double> ps;
  for (int round = 0; round < kRounds; ++round) {
    warm.push_back(milliseconds(find));
    ps.push_back(milliseconds([&] { isRight = std::system("ps -e >/dev/null") == 0 && isRight; }));
  }
  if (!isRight) {
    std::fputs("not the copies that were started, or no ps\n", stderr);
    return 1;
  }
  std::printf("process.find.ms %.3f\nprocess.find.warm.ms %.3f\nprocess.ps.ms %.3f\n", first, median(warm),
              median(ps));
}
