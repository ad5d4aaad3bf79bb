// How long a copy takes by the copy engine, beside other programs in the same run. Each figure compares the
// times of whole processes, which take turns, each into a fresh folder of a file system that is new for the
// round; what the one before has left unwritten is written before the next one starts. Prints one "NAME
// VALUE" line for each figure; a ratio is the median of the rounds' ratios, and below 1 the engine is faster.
//
//   copy.CASE.vs_cp, vs_rsync, vs_tar, vs_std, vs_gnustep
//                        the engine to `cp -a`, `rsync -a`, `tar | tar`, std::filesystem::copy and GNUstep's
//                        copyItemAtPath:; none of them waits for the disk, and for these figures the engine
//                        does not either
//   copy.CASE.vs_cp_sync the engine as the installer uses it, which brings its copy to the disk, to `cp -a`
//   and `sync -f` copy.CASE.vs_floor   the engine to the system calls that the work needs, one after the
//   other copy.CASE.ms, sync_ms  the engine's median time, without and with the disk copy.CASE.peak_kib   the
//   memory that a copy takes above the idle process, at most
//
// Cases: see Bundles.h; those that the command names, or all. KR_BENCH_SCRATCH names the folder to work in
// (/var/tmp), KR_BENCH_ROUNDS the number of rounds (7).
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "benchmarks/copy/Bundles.h"
#include "benchmarks/copy/FreshFileSystem.h"

extern char** environ;  // NOLINT: the C library's

namespace {

namespace fs = std::filesystem;
using kr::bench::Bundle;
using Milliseconds = std::chrono::duration<double, std::milli>;

[[noreturn]] void fail(const std::string& what) {
  std::fprintf(stderr, "copy_bench: %s\n", what.c_str());
  std::exit(1);
}

class Scratch {
 public:
  Scratch() {
    const char* root = std::getenv("KR_BENCH_SCRATCH");
    std::string path = std::string(root != nullptr ? root : "/var/tmp") + "/kr-bench.XXXXXX";
    if (::mkdtemp(path.data()) == nullptr) fail("no scratch folder at " + path);
    path_ = path;
  }
  ~Scratch() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  [[nodiscard]] const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

// The programs of the comparison by number; those from kInCache on do not wait for the disk.
enum { kInCache = 2, kCount = kInCache + 7 };

struct Contender {
  const char* name;
  // The command's words, of which SOURCE and COPY stand for the two paths.
  std::vector<std::string> command;
};

struct Run {
  double milliseconds;
  double printed;  // the number on its output
};

Run run(const Contender& contender, const std::string& source, const std::string& copy) {
  std::vector<std::string> command = contender.command;
  std::vector<char*> words;
  for (std::string& word : command) {
    if (word == "SOURCE") word = source;
    if (word == "COPY") word = copy;
    words.push_back(word.data());
  }
  words.push_back(nullptr);
  int output[2];
  if (::pipe2(output, O_CLOEXEC) != 0) fail("no pipe");
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
  const auto start = std::chrono::steady_clock::now();
  pid_t pid = 0;
  if (::posix_spawnp(&pid, words[0], &actions, nullptr, words.data(), environ) != 0) fail("no " + command[0]);
  int status = 0;
  if (::waitpid(pid, &status, 0) != pid || status != 0) fail(command[0] + " has failed");
  const Milliseconds taken = std::chrono::steady_clock::now() - start;
  ::posix_spawn_file_actions_destroy(&actions);
  ::close(output[1]);
  char text[64] = {};
  (void)::read(output[0], text, sizeof text - 1);
  ::close(output[0]);
  return {taken.count(), std::atof(text)};
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

class Comparison {
 public:
  Comparison(const Bundle& bundle, std::vector<Contender> contenders, int rounds)
      : bundle_(bundle), contenders_(std::move(contenders)), rounds_(rounds) {}

  void measure() {
    const Scratch scratch;
    makeBundle(bundle_, scratch.path() / "Source.app");
    for (int round = 0; round < rounds_; ++round) {
      for (int turn = 0; turn < kInCache; ++turn) takeTurn((round + turn) % kInCache, scratch.path());
      const int others = kCount - kInCache;
      for (int turn = 0; turn < others; ++turn) takeTurn(kInCache + (round + turn) % others, scratch.path());
    }
  }

  void print() {
    for (const char* other : {"cp", "rsync", "tar", "std", "gnustep"})
      printRatio("engine-cp", other, times(other));
    printRatio("engine", "cp_sync", times("cp_sync"));
    printRatio("engine-cp", "floor", printed("floor"));
    print("ms", median(times("engine-cp")));
    print("sync_ms", median(times("engine")));
    const std::vector<double> peaks = printed("engine");
    print("peak_kib", *std::max_element(peaks.begin(), peaks.end()));
    std::fflush(stdout);
  }

 private:
  void takeTurn(int number, const fs::path& scratch) {
    const Contender& contender = contenders_[static_cast<std::size_t>(number)];
    const kr::bench::FreshFileSystem fileSystem(scratch / "disk", scratch / "image");
    ::sync();
    runs_[contender.name].push_back(run(contender, scratch / "Source.app", scratch / "disk/Copy.app"));
  }

  std::vector<double> times(const std::string& name) { return each(name, &Run::milliseconds); }
  std::vector<double> printed(const std::string& name) { return each(name, &Run::printed); }
  std::vector<double> each(const std::string& name, double Run::*figure) {
    std::vector<double> result;
    for (const Run& one : runs_[name]) result.push_back(one.*figure);
    return result;
  }

  void printRatio(const char* engine, const std::string& other, const std::vector<double>& others) {
    std::vector<double> ratios = times(engine);
    for (std::size_t round = 0; round < ratios.size(); ++round) ratios[round] /= others[round];
    print("vs_" + other, median(ratios));
  }

  void print(const std::string& metric, double value) const {
    std::printf("copy.%s.%s %.*f\n", bundle_.name, metric.c_str(), metric.starts_with("vs_") ? 2 : 0, value);
  }

  const Bundle& bundle_;
  std::vector<Contender> contenders_;
  int rounds_;
  std::map<std::string, std::vector<Run>> runs_;
};

std::vector<Contender> contenders() {
  const fs::path programs = fs::read_symlink("/proc/self/exe").parent_path();
  const std::string once = programs / "copy_once";
  const auto shell = [](const char* script) {
    return std::vector<std::string>{"sh", "-c", script, "sh", "SOURCE", "COPY"};
  };
  return {{"engine", {once, "engine", "SOURCE", "COPY"}},
          {"cp_sync", shell("cp -a \"$1\" \"$2\" && sync -f \"$2\"")},
          {"engine-cp", {once, "engine-cp", "SOURCE", "COPY"}},
          {"cp", {"cp", "-a", "SOURCE", "COPY"}},
          {"rsync", shell("exec rsync -a \"$1/\" \"$2\"")},
          {"tar", shell("mkdir \"$2\" && tar -C \"$1\" -cf - . | tar -C \"$2\" -xpf -")},
          {"std", {once, "std", "SOURCE", "COPY"}},
          {"gnustep", {programs / "copy_foundation", "SOURCE", "COPY"}},
          {"floor", {programs / "copy_floor", "SOURCE", "COPY"}}};
}

}  // namespace

int main(int count, char** words) {
  const std::set<std::string> wanted(words + 1, words + count);
  const char* rounds = std::getenv("KR_BENCH_ROUNDS");
  for (const Bundle& bundle : kr::bench::kBundles) {
    if (!wanted.empty() && !wanted.contains(bundle.name)) continue;
    Comparison comparison(bundle, contenders(), rounds != nullptr ? std::max(1, std::atoi(rounds)) : 7);
    comparison.measure();
    comparison.print();
  }
}
