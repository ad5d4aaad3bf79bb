#include "benchmarks/copy/Bundles.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <random>
#include <vector>

namespace kr::bench {
namespace {

constexpr std::uint64_t kSeed = 20260101;
constexpr int kFilesPerFolder = 50;

// Parts of a hundred that the libraries have of the bundle.
constexpr std::array<std::uint64_t, 10> kLibraries{20, 13, 10, 8, 6, 5, 5, 3, 3, 2};

// Sizes of a bundle's files: many small ones, a few that make up most of it.
std::vector<std::uint64_t> sizes(const Bundle& bundle, std::mt19937_64& random) {
  std::vector<std::uint64_t> result;
  std::uint64_t bytes = bundle.bytes;
  if (bundle.hasLargeLibraries) {
    for (const std::uint64_t parts : kLibraries) bytes -= result.emplace_back(bundle.bytes / 100 * parts);
  }
  std::normal_distribution<double> normal(0, bundle.files > 10000 ? 0.6 : 1.8);
  std::vector<double> weights(static_cast<std::size_t>(bundle.files) - result.size());
  double sum = 0;
  for (double& weight : weights) sum += weight = std::exp(normal(random));
  for (const double weight : weights)
    result.push_back(static_cast<std::uint64_t>(weight / sum * static_cast<double>(bytes)));
  return result;
}

void writeFile(const std::filesystem::path& path, std::uint64_t size, std::mt19937_64& random) {
  std::vector<std::uint64_t> words(size / sizeof(std::uint64_t) + 1);
  for (std::uint64_t& word : words) word = random();
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(words.data()), static_cast<std::streamsize>(size));
  if (!file.flush()) {
    std::fprintf(stderr, "cannot write %s\n", path.c_str());
    std::exit(1);
  }
}

}  // namespace

void makeBundle(const Bundle& bundle, const std::filesystem::path& root) {
  std::mt19937_64 random(kSeed);
  std::filesystem::path folder;
  int number = 0;
  for (const std::uint64_t size : sizes(bundle, random)) {
    if (number % kFilesPerFolder == 0) {
      folder = root / "Contents" / ("Folder " + std::to_string(number / kFilesPerFolder));
      std::filesystem::create_directories(folder);
    }
    writeFile(folder / ("file" + std::to_string(number++)), size, random);
  }
}

}  // namespace kr::bench
