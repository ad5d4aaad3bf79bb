#include "tests/support/TestApplication.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <stdexcept>

#include "platform/Paths.h"
#include "platform/posix/FileDescriptor.h"

namespace kr::testing {
namespace {

constexpr int kStartMilliseconds = 20'000;

std::string entry(std::string_view key, const std::string& value) {
  if (value.empty()) return {};
  return "<key>" + std::string(key) + "</key><string>" + value + "</string>\n";
}

Child start(const std::string& executable, const std::vector<std::string>& words) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  const posix::FileDescriptor read(ends[0]);
  posix::FileDescriptor write(ends[1]);
  std::vector<std::string> arguments{executable, "ready", std::to_string(write.get())};
  arguments.insert(arguments.end(), words.begin(), words.end());
  Child child(arguments, write.get());
  write.reset();
  pollfd wait{read.get(), POLLIN, 0};
  char character = 0;
  if (::poll(&wait, 1, kStartMilliseconds) != 1 || ::read(read.get(), &character, 1) != 1) {
    throw std::runtime_error(executable + " did not start");
  }
  return child;
}

}  // namespace

std::string makeBundle(const ScratchFolder& folder, const std::string& name,
                       const BundleInformation& information) {
  const std::string executable =
      folder.folder(name) + "/" + std::string(paths::withoutExtension(paths::lastComponent(name)));
  std::filesystem::copy_file(KR_TEST_APPLICATION, executable,
                             std::filesystem::copy_options::overwrite_existing);
  static_cast<void>(folder.file(
      name + "/Contents/Info.plist",
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>\n" +
          entry("CFBundleSignature", information.signature) + entry("CFBundleName", information.name) +
          entry("CFBundleIdentifier", information.identifier) + information.further + "</dict></plist>\n"));
  return executable;
}

TestApplication::TestApplication(const ScratchFolder& folder, const std::string& name,
                                 const BundleInformation& information, const std::vector<std::string>& words)
    : TestApplication(makeBundle(folder, name, information), words) {}

TestApplication::TestApplication(const std::string& executable, const std::vector<std::string>& words)
    : child_(start(executable, words)) {}

}  // namespace kr::testing
