// How long a copy takes by the copy engine, beside `cp -a` in the same run. Each figure compares the times of
// whole processes, which take turns, each into a fresh folder; what the one before has left unwritten is
// written before the next one starts. For root, every round has a new file system (ext4 in a file): on one in
// use, the search for free inodes among those deleted a moment ago can take longer than the copies. Prints
// one "NAME VALUE" line for each figure; a ratio is the median of the rounds' ratios, and below 1 the engine
// is faster.
//
//   copy.CASE.vs_cp       the engine, which brings its copy to the disk, to `cp -a`, which does not
//   copy.CASE.vs_cp_sync  the engine to `cp -a` followed by `sync -f`
//   copy.CASE.ms          the engine's median time
//
// Cases: small (5,000 small files), typical (53 MB in 1,500 files), large (300 MB in 500 files).
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

extern char** environ;  // NOLINT: the C library's

namespace {

namespace fs = std::filesystem;

constexpr int kRounds = 7;
constexpr std::uint64_t kSeed = 20260101;
constexpr int kFilesPerFolder = 50;

struct Case {
  const char* name;
  int files;
  std::uint64_t bytes;
};
constexpr std::array<Case, 3> kCases{
    {{"small", 5000, 10UL << 20}, {"typical", 1500, 53UL << 20}, {"large", 500, 300UL << 20}}};

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

// An empty file system at a folder until the end of the scope; the folder as it is where none can be made.
class FreshFileSystem {
 public:
  FreshFileSystem(const fs::path& folder, const fs::path& image) : folder_(folder), image_(image) {
    fs::create_directory(folder);
    if (::geteuid() != 0) return;
    std::ofstream(image, std::ios::binary).close();
    fs::resize_file(image, 2UL << 30);
    isMounted_ =
        isDone("/usr/sbin/mkfs.ext4 -q -E lazy_itable_init=1,lazy_journal_init=1,nodiscard '" +
               image.string() + "' && mount -o loop '" + image.string() + "' '" + folder.string() + "'");
    if (!isMounted_) std::fprintf(stderr, "copy_bench: no file system of its own\n");
  }
  ~FreshFileSystem() {
    if (isMounted_ && !isDone("umount '" + folder_.string() + "'"))
      fail("cannot unmount " + folder_.string());
    std::error_code ignored;
    fs::remove(image_, ignored);
  }
  FreshFileSystem(const FreshFileSystem&) = delete;
  FreshFileSystem& operator=(const FreshFileSystem&) = delete;

 private:
  static bool isDone(const std::string& command) { return std::system((command + " >&2").c_str()) == 0; }

  fs::path folder_;
  fs::path image_;
  bool isMounted_ = false;
};

// Sizes of a bundle's files: many small ones, a few that make up most of it.
std::vector<std::uint64_t> sizes(const Case& kind, std::mt19937_64& random) {
  std::vector<double> weights;
  double sum = 0;
  std::normal_distribution<double> normal(0, kind.bytes > 20UL << 20 ? 1.8 : 0.6);
  for (int file = 0; file < kind.files; ++file) sum += weights.emplace_back(std::exp(normal(random)));
  std::vector<std::uint64_t> result;
  for (const double weight : weights) {
    result.push_back(static_cast<std::uint64_t>(weight / sum * static_cast<double>(kind.bytes)));
  }
  return result;
}

void makeTree(const Case& kind, const fs::path& root) {
  std::mt19937_64 random(kSeed);
  std::vector<char> bytes;
  int number = 0;
  fs::path folder;
  for (const std::uint64_t size : sizes(kind, random)) {
    if (number % kFilesPerFolder == 0) {
      folder = root / "Contents" / ("Folder " + std::to_string(number / kFilesPerFolder));
      fs::create_directories(folder);
    }
    bytes.resize((size + 7) / 8 * 8);
    for (std::size_t at = 0; at < bytes.size(); at += 8) {
      const std::uint64_t word = random();
      std::memcpy(&bytes[at], &word, 8);
    }
    std::ofstream(folder / ("file" + std::to_string(number++)), std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(size));
  }
}

// Milliseconds until the process has ended.
double run(const std::vector<std::string>& command) {
  std::vector<char*> words;
  for (const std::string& word : command) words.push_back(const_cast<char*>(word.c_str()));
  words.push_back(nullptr);
  const auto start = std::chrono::steady_clock::now();
  pid_t pid = 0;
  if (::posix_spawnp(&pid, words[0], nullptr, nullptr, words.data(), environ) != 0) fail("no " + command[0]);
  int status = 0;
  if (::waitpid(pid, &status, 0) != pid || status != 0) fail(command[0] + " has failed");
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void measure(const Case& kind, const std::string& engine) {
  const Scratch scratch;
  const fs::path source = scratch.path() / "Source.app";
  makeTree(kind, source);
  enum Contender { kEngine, kCp, kCpSync, kContenders };
  std::vector<double> times, toCp, toCpSync;
  for (int round = 0; round < kRounds; ++round) {
    std::array<double, kContenders> taken{};
    const fs::path disk = scratch.path() / ("round" + std::to_string(round));
    const FreshFileSystem fileSystem(disk, scratch.path() / "disk");
    for (int turn = 0; turn < kContenders; ++turn) {
      const int contender = (round + turn) % kContenders;
      const fs::path folder = disk / std::to_string(contender);
      fs::create_directory(folder);
      const std::string copy = folder / "Copy.app";
      ::sync();
      if (contender == kEngine) {
        taken[kEngine] = run({engine, source, copy});
      } else {
        taken[contender] = run({"cp", "-a", source, copy});
        if (contender == kCpSync) taken[contender] += run({"sync", "-f", copy});
      }
    }
    times.push_back(taken[kEngine]);
    toCp.push_back(taken[kEngine] / taken[kCp]);
    toCpSync.push_back(taken[kEngine] / taken[kCpSync]);
  }
  std::printf("copy.%s.vs_cp %.2f\ncopy.%s.vs_cp_sync %.2f\ncopy.%s.ms %.1f\n", kind.name, median(toCp),
              kind.name, median(toCpSync), kind.name, median(times));
  std::fflush(stdout);
}

}  // namespace

int main(int, char** words) {
  const std::string engine = fs::read_symlink("/proc/self/exe").parent_path() / "copy_once";
  if (!fs::exists(engine)) fail(std::string("no copy_once beside ") + words[0]);
  for (const Case& kind : kCases) measure(kind, engine);
}
