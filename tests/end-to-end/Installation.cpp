#include "tests/end-to-end/Installation.h"

#include <dirent.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "platform/Paths.h"
#include "platform/posix/Files.h"
#include "tests/end-to-end/Products.h"
#include "tests/support/CloseRequest.h"
#include "tests/support/Eventually.h"

namespace kr::testing {
namespace {

namespace fs = std::filesystem;

// What a program prints; empty when it fails.
std::string output(const std::string& command) {
  std::string text;
  std::FILE* pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) return text;
  char buffer[512];
  while (std::fgets(buffer, sizeof buffer, pipe) != nullptr) text += buffer;
  return ::pclose(pipe) == 0 ? text : std::string();
}

std::string describe(const fs::path& path) {
  struct stat status {};
  ::lstat(path.c_str(), &status);
  std::string text = std::to_string(status.st_mode) + " ";
  if (S_ISLNK(status.st_mode)) return "link " + fs::read_symlink(path).string();
  if (S_ISREG(status.st_mode)) text += files::contents(path, 1UL << 30).value_or("(unreadable)");
  return text;
}

std::map<std::string, std::string> tree(const std::string& folder) {
  std::map<std::string, std::string> items{{".", describe(folder)}};
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    items[entry.path().string().substr(folder.size())] = describe(entry.path());
  }
  return items;
}

}  // namespace

Installation::Installation() : home_(scratch_.folder("home")) {
  const auto set = [this](const char* name, std::optional<std::string> value) {
    environment_.push_back(std::make_unique<ScopedVariable>(name, value));
  };
  set("HOME", home_);
  for (const char* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_DIRS"})
    set(name, {});
  set("LC_ALL", "C.UTF-8");
  desktop_.emplace(DesktopParts{.display = true, .windowManager = true, .bus = true});
}

Installation::~Installation() {
  if (installer_) installer_->stop();
  for (const pid_t pid : processesIn(scratch_.path())) ::kill(pid, SIGKILL);
  (void)eventually([&] { return processesIn(scratch_.path()).empty(); });
  if (HasFailure()) {
    for (const std::string& line : log()) std::fprintf(stderr, "log: %s\n", line.c_str());
  }
}

std::string Installation::installerProgram() {
  return KR_INSTALLER_PROGRAM;
}

std::string Installation::sample(const std::string& version) {
  return KR_SAMPLES_FOLDER "/" + version;
}

std::string Installation::logPath() const {
  return home_ + "/Library/Logs/VelmoraInstaller.log";
}

void Installation::start(const Lines& arguments, const std::string& program) {
  Lines words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  status_.reset();
  installer_.emplace(words);
  ASSERT_TRUE(eventually([&] { return window().has_value(); }, 20))
      << "the installer's window does not appear";
}

void Installation::openSmall(const std::string& destination, const Lines& more) {
  Lines arguments{"-sourcePath", smallApplication(scratch_ / "Small.app"), "-destinationPath", destination};
  arguments.insert(arguments.end(), more.begin(), more.end());
  start(arguments);
  expectLine("Updated arguments: ");
}

Lines Installation::windows() {
  std::istringstream found(
      output("xdotool search --onlyvisible --classname '^VelmoraInstaller$' 2>/dev/null"));
  Lines ids;
  for (std::string id; std::getline(found, id);) ids.push_back(id);
  return ids;
}

std::optional<std::string> Installation::window() const {
  const Lines ids = windows();
  if (ids.empty()) return std::nullopt;
  return ids.front();
}

void Installation::type(const std::string& key) {
  (void)std::system(("timeout 5 xdotool keydown " + key + " sleep 0.1 keyup " + key).c_str());
}

void Installation::click(int x, int y, const std::string& held) {
  const auto id = window();
  if (!id) return;
  const std::string down = held.empty() ? "" : " keydown " + held + " sleep 0.1";
  const std::string up = held.empty() ? "" : " sleep 0.5 keyup " + held;
  (void)std::system(("timeout 5 xdotool mousemove --window " + *id + " " + std::to_string(x) + " " +
                     std::to_string(y) + " sleep 0.1" + down + " mousedown 1 sleep 0.1 mouseup 1" + up)
                        .c_str());
}

void Installation::press(const std::string& key) {
  const auto id = window();
  if (!id) return;
  // The window manager brings the window to the front first, and a key goes down and up again as a finger
  // would have it: the toolkit misses one that comes too early or is too short.
  const std::string command = "timeout 5 xdotool windowactivate --sync " + *id + " sleep 0.2 keydown " + key +
                              " sleep 0.1 keyup " + key;
  // The window may go in the middle of it; whoever presses waits for what follows.
  (void)std::system((command + " 2>/dev/null").c_str());
}

void Installation::install(const std::string& product, const std::string& destination, const Lines& more) {
  Lines arguments{"-sourcePath", product, "-destinationPath", destination};
  arguments.insert(arguments.end(), more.begin(), more.end());
  start(arguments);
  pressInstall();
}

void Installation::pressInstall() {
  expectLine("Updated arguments: ");
  // The first key may come before the window manager has given the window the focus. A lock that a killed
  // program of the toolkit has left can hold the application up for much longer.
  ASSERT_TRUE(eventually(
      [&] {
        press("Return");
        return eventually([&] { return logHas("Install"); }, 1);
      },
      45));
}

Lines Installation::log() const {
  Lines lines;
  std::ifstream file(logPath());
  for (std::string line; std::getline(file, line);) {
    const std::size_t end = line.find("] ");
    lines.push_back(end == std::string::npos ? line : line.substr(end + 2));
  }
  return lines;
}

bool Installation::logHas(const std::string& line) const {
  const Lines lines = log();
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

void Installation::expectLine(const std::string& beginning, double seconds) {
  EXPECT_TRUE(eventually(
      [&] {
        const Lines lines = log();
        return std::any_of(lines.begin(), lines.end(),
                           [&](const std::string& line) { return line.starts_with(beginning); });
      },
      seconds))
      << "the log lacks: " << beginning;
}

void Installation::expectInstalled(const std::string& destination) {
  expectLine("successfully copied");
  expectLine("launched immediately: 1");
  EXPECT_TRUE(eventually([&] { return !processesIn(destination).empty(); })) << "the product does not run";
}

void Installation::expectFailed(const std::string& line) {
  expectLine(line);
  EXPECT_FALSE(logHas("successfully copied"));
}

void Installation::expectQuitsOnOK() {
  for (int attempt = 0; attempt < 30 && !ends(0); ++attempt) {
    press("Return");
    ends(1);
  }
  expectEnds(0);
}

bool Installation::ends(double seconds) {
  if (!status_) status_ = installer_->wait(seconds);
  return status_.has_value();
}

double Installation::expectEnds(double seconds) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_TRUE(ends(seconds)) << "the installer still runs";
  EXPECT_EQ(status_.value_or(0), 0);
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

std::string Installation::picture() const {
  const auto id = window();
  return id ? output("import -window " + *id + " -depth 8 rgb:- 2>/dev/null | md5sum") : std::string();
}

void Installation::closeWindow() {
  const auto id = window();
  ASSERT_TRUE(id);
  ASSERT_TRUE(requestClose(static_cast<std::uint32_t>(std::stoul(*id))));
}

void Installation::kill() {
  installer_->signal(SIGKILL);
  (void)installer_->wait(5);
}

std::vector<pid_t> Installation::processesIn(const std::string& folder) {
  std::vector<pid_t> found;
  for (const std::string& name : files::entries("/proc").value_or(Lines{})) {
    if (name.find_first_not_of("0123456789") != std::string::npos) continue;
    std::error_code error;
    const std::string program = fs::read_symlink("/proc/" + name + "/exe", error).string();
    if (!error && paths::isSameOrInside(program, folder)) found.push_back(std::stoi(name));
  }
  return found;
}

void Installation::launch(const std::string& program, const std::string& windowName) {
  launched_.emplace_back(Lines{program});
  ASSERT_TRUE(eventually(
      [&] { return !output("xdotool search --onlyvisible --name '" + windowName + "'").empty(); }, 15))
      << program << " shows no window";
}

Lines Installation::trashed() const {
  Lines names = files::entries(home_ + "/.local/share/Trash/files").value_or(Lines{});
  std::sort(names.begin(), names.end());
  return names;
}

void Installation::expectSameTree(const std::string& one, const std::string& other) {
  const auto first = tree(one);
  const auto second = tree(other);
  EXPECT_EQ(first.size(), second.size());
  for (const auto& [name, item] : first) {
    const auto twin = second.find(name);
    if (twin == second.end()) {
      ADD_FAILURE() << other << " lacks " << name;
    } else {
      EXPECT_TRUE(item == twin->second) << name << " differs";
    }
  }
}

}  // namespace kr::testing
