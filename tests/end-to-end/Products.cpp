#include "tests/end-to-end/Products.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>

#include "platform/Paths.h"
#include "platform/posix/Files.h"

namespace kr::testing {
namespace {

namespace fs = std::filesystem;

constexpr const char* kPackages = "/usr/lib/GNUstep/Applications/";
constexpr std::size_t kLargeFiles = 10, kLargeSize = 5UL << 20;
constexpr int kSmallFiles = 1500;

void write(const std::string& path, const std::string& bytes) {
  files::makeFolders(std::string(paths::parent(path)));
  std::ofstream(path, std::ios::binary) << bytes;
}

std::string information(const std::string& program, const std::string& signature) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist "
         "version=\"1.0\"><dict>\n<key>CFBundleExecutable</key><string>" +
         program + "</string>\n<key>CFBundleIdentifier</key><string>com.example." + program +
         "</string>\n<key>CFBundleShortVersionString</key><string>3.1</string>\n<key>CFBundleSignature</"
         "key><string>" +
         signature + "</string>\n</dict></plist>\n";
}

// A program that stays until it is ended.
void program(const std::string& path) {
  files::makeFolders(std::string(paths::parent(path)));
  fs::copy_file(KR_RESIDENT_PROGRAM, path);
  ::chmod(path.c_str(), 0755);
}

}  // namespace

std::string packagedApplication(const std::string& name, const std::string& signature,
                                const std::string& folder) {
  const std::string copy = folder + "/" + name + ".app";
  files::makeFolders(folder);
  const std::string command = std::string("cp -rL '") + kPackages + name + ".app' '" + copy + "'";
  EXPECT_EQ(std::system(command.c_str()), 0) << command;
  const std::string file = copy + "/Resources/Info-gnustep.plist";
  std::string text = readFile(file);
  text.insert(text.rfind('}'), "    CFBundleSignature = " + signature + ";\n");
  write(file, text);
  return copy;
}

std::string largeApplication(const std::string& path) {
  const std::string contents = path + "/Contents";
  write(contents + "/Info.plist", information("Large", "LrgA"));
  program(contents + "/MacOS/Large");
  std::mt19937_64 random(1);
  for (std::size_t file = 0; file < kLargeFiles; ++file) {
    std::string bytes(kLargeSize, '\0');
    for (std::size_t at = 0; at < bytes.size(); at += 8) {
      const auto value = random();
      std::memcpy(bytes.data() + at, &value, 8);
    }
    write(contents + "/Resources/data" + std::to_string(file), bytes);
  }
  for (int file = 0; file < kSmallFiles; ++file) {
    write(contents + "/Resources/en.lproj/topic" + std::to_string(file) + ".html",
          std::string(random() % 9000, 'x'));
  }
  const std::string framework = contents + "/Frameworks/Kit.framework";
  write(framework + "/Versions/A/Kit", "library");
  write(framework + "/Versions/A/Resources/Info.plist", information("Kit", "????"));
  fs::create_directory_symlink("A", framework + "/Versions/Current");
  fs::create_symlink("Versions/Current/Kit", framework + "/Kit");
  fs::create_directory_symlink("Versions/Current/Resources", framework + "/Resources");
  return path;
}

std::string smallApplication(const std::string& path, bool startable) {
  write(path + "/Contents/Info.plist", information("Small", "SmlA"));
  write(path + "/Contents/Resources/words.txt", "words\n");
  if (startable) program(path + "/Contents/MacOS/Small");
  return path;
}

}  // namespace kr::testing
