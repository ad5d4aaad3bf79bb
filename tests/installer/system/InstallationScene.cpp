#include "tests/installer/system/InstallationScene.h"

#include <fcntl.h>
#include <gio/gio.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <sstream>
#include <system_error>

#include "installer/InstallApplication.h"
#include "platform/Services.h"
#include "platform/SystemServices.h"
#include "platform/posix/Files.h"
#include "platform/testing/FixedDesktop.h"
#include "tests/support/SystemCalls.h"

namespace kr::testing {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargerThanABuffer = 300000;
constexpr unsigned kSomebody = 12345;
const std::vector<std::string> kWrapperItems{"Extras", "licence.txt", "link"};

std::map<std::string, std::string> stamps(const std::string& root) {
  std::map<std::string, std::string> stamps;
  const auto add = [&](const std::string& path) {
    struct stat status {};
    ASSERT_EQ(::lstat(path.c_str(), &status), 0) << path;
    std::ostringstream line;
    line << status.st_ino << " " << status.st_ctim.tv_sec << "." << status.st_ctim.tv_nsec;
    stamps[path] = line.str();
  };
  add(root);
  for (const auto& item : fs::recursive_directory_iterator(root)) add(item.path());
  return stamps;
}

void makeSparse(const std::string& path) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  EXPECT_EQ(::pwrite(file, "start", 5, 0), 5);
  EXPECT_EQ(::pwrite(file, "middle", 6, 65536), 6);
  EXPECT_EQ(::ftruncate(file, 131072), 0);
  ::close(file);
}

std::string takeFront(std::vector<std::string>& lines) {
  if (lines.empty()) return "(no further line)";
  std::string line = std::move(lines.front());
  lines.erase(lines.begin());
  return line;
}

// The reason that is logged after the line of a failed step: the system's own, or what follows from a
// question about the disk that the fault has answered with no.
void expectReason(const std::string& line, const Fault& fault) {
  using ::testing::AnyOf, ::testing::EndsWith, ::testing::HasSubstr, ::testing::StartsWith;
  EXPECT_THAT(line, AnyOf(EndsWith(": " + std::generic_category().message(fault.number)),
                          HasSubstr(": " + std::generic_category().message(fault.number) + ") "),
                          AllOf(StartsWith("copy to "), EndsWith(": File exists")),
                          StartsWith("the source is not a readable folder: "),
                          StartsWith("the wrapper cannot be listed"),
                          // GIO does not always say why.
                          StartsWith("move to the Trash (Unable to find or create trash directory "),
                          StartsWith("move to the Trash (Unable to create trash directory ")));
}

// Whether the installation has to succeed all the same.
bool mustBeSurvived(const Fault& fault, const FaultRun& run) {
  if (run.hits == 0 || fault.kind == Fault::Kind::cutShort) return true;
  return fault.number == EINTR && mayBeInterrupted(run.number);
}

off_t blocks(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
  return status.st_blocks;
}

}  // namespace

InstallationScene::InstallationScene(const Furniture& furniture)
    : furniture_(furniture),
      source_(scratch_ / "disk/P.app"),
      wrapper_(scratch_ / "disk/Wrapper"),
      applications_(scratch_ / "place/Applications"),
      destination_(applications_ + "/" + furniture.product),
      trash_(scratch_ / "data/Trash") {
  ::setenv("XDG_DATA_HOME", (scratch_ / "data").c_str(), 1);
  // What is looked up once per program is none of the calls of an installation.
  static_cast<void>(platform::services());
  g_object_unref(g_file_new_for_path("/"));
  makeProduct();
  makeWrapper();
  product_ = fileTree(source_);
  arrange();
  if (furniture_.oldCopy) old_ = fileTree(destination_);
  stamps_ = stamps(scratch_ / "disk");
}

void InstallationScene::makeProduct() const {
  scratch_.file("disk/P.app/Contents/Info.plist", "contents");
  makeSparse(source_ + "/Contents/sparse");
  EXPECT_EQ(::symlink("Info.plist", (source_ + "/Contents/link").c_str()), 0);
  if (furniture_.richProduct) makeRichProduct();
}

void InstallationScene::makeRichProduct() const {
  const auto file = [&](const std::string& name, const std::string& contents = "contents") {
    return scratch_.file("disk/P.app/Contents/" + name, contents);
  };
  const std::string contents = source_ + "/Contents";
  std::string bytes(kLargerThanABuffer, '\0');
  for (std::size_t at = 0; at < bytes.size(); ++at) bytes[at] = static_cast<char>(at * 7919 >> 3);
  EXPECT_EQ(::chmod(file("MacOS/P", bytes).c_str(), 04755), 0);
  EXPECT_TRUE(setAttribute(file("Info.plist"), "user.origin", "disk"));
  file("empty", "");
  // Enough in one folder to be shared out.
  for (const char* name : {"a", "b", "c"}) file(std::string("Resources/") + name, name);
  EXPECT_TRUE(
      setAttribute(file("Resources/listed"), "system.posix_acl_access", accessListWithReader(kSomebody)));
  EXPECT_EQ(::link((contents + "/Info.plist").c_str(), (contents + "/Resources/second").c_str()), 0);
  EXPECT_EQ(::link((contents + "/link").c_str(), (contents + "/Resources/link").c_str()), 0);
  fs::create_directory(contents + "/Passing");
  EXPECT_TRUE(
      setAttribute(contents + "/Passing", "system.posix_acl_default", accessListWithReader(kSomebody)));
  EXPECT_TRUE(setAttribute(contents + "/Resources", "user.folder", "x"));
  if (::geteuid() == 0) EXPECT_EQ(::chown(file("owned").c_str(), 1234, 5678), 0);
  long second = 1000000000;
  for (const char* name :
       {"MacOS/P", "Info.plist", "link", "sparse", "Resources/a", "MacOS", "Resources", ""}) {
    setTimes(contents + "/" + name, second++, 123456789);
  }
  EXPECT_EQ(::chmod((contents + "/Resources").c_str(), 0555), 0);
}

void InstallationScene::makeWrapper() const {
  scratch_.file("disk/Wrapper/licence.txt", "licence");
  scratch_.file("disk/Wrapper/Extras/one", "one");
  scratch_.folder("disk/Wrapper/Extras/empty");
  EXPECT_EQ(::symlink("licence.txt", (wrapper_ + "/link").c_str()), 0);
  setTimes(wrapper_ + "/link", 1000000100, 5);
}

// Makes all that an installation changes.
void InstallationScene::arrange() {
  removeAll(scratch_ / "place");
  removeAll(scratch_ / "data");
  scratch_.folder("data");
  scratch_.folder("place");
  log_.clear();
  if (furniture_.isFolderMissing) return;
  scratch_.folder("place/Applications");
  if (furniture_.oldCopy) {
    const std::string name = "place/Applications/" + furniture_.product;
    setTimes(scratch_.file(name + "/Contents/old", "old"), 900000000, 1);
    setTimes(destination_ + "/Contents", 900000001, 1);
    setTimes(destination_, 900000002, 1);
  }
  if (furniture_.wrapper) {
    scratch_.file("place/Applications/licence.txt", "old licence");
    scratch_.file("place/Applications/Extras/older/file", "old");
  }
  if (furniture_.trash) {
    scratch_.file("data/Trash/files/" + furniture_.product + "/earlier", "earlier");
    scratch_.file("data/Trash/info/" + furniture_.product + ".trashinfo", "[Trash Info]\nPath=/P.app\n");
  }
  // What the folder passes on to what is made in it is not the product's.
  EXPECT_TRUE(setAttribute(applications_, "system.posix_acl_default", accessListWithReader(kSomebody)));
  EXPECT_EQ(::chmod(applications_.c_str(), 02755), 0);
}

int InstallationScene::install() {
  platform::testing::FixedProgram program;
  platform::testing::RecordingApplications applications;
  platform::Services services = platform::services();
  services.log = &log_;
  services.files = &platform::systemFileOperations();
  services.applications = &applications;
  services.program = &program;
  const platform::ScopedServices scope(services);
  return InstallApplication(source_, destination_,
                            furniture_.wrapper ? std::optional(wrapper_) : std::nullopt);
}

FaultRun InstallationScene::installWithFault(std::size_t at, const Fault& fault, Threads threads) {
  const FaultRun run = runWithFault([this] { return install(); }, at, fault, threads);
  SCOPED_TRACE(fault.text() + " at " + std::to_string(at) + ": " + run.call);
  expectNothingHalf();
  const bool isKilled = fault.kind == Fault::Kind::kill && run.hits > 0;
  EXPECT_EQ(WIFSIGNALED(run.traced.status), isKilled) << run.traced.status;
  if (isKilled) {
    log_.clear();
    EXPECT_EQ(runWithFault([this] { return install(); }, 0, fault).traced.status, 0);
    expectInstalled();
  } else if (const int code = WEXITSTATUS(run.traced.status)) {
    EXPECT_FALSE(mustBeSurvived(fault, run));
    expectFailed(code, fault);
  } else {
    expectInstalled();
  }
  EXPECT_EQ(stamps(scratch_ / "disk"), stamps_);
  arrange();
  return run;
}

void InstallationScene::expectInstalled() {
  EXPECT_EQ(log_.lines(), Lines{});
  EXPECT_EQ(fileTree(destination_), product_);
  EXPECT_LE(blocks(destination_ + "/Contents/sparse"), blocks(source_ + "/Contents/sparse"));
  expectOldCopyKept(false);
  expectNoStaging();
  if (!furniture_.wrapper) return;
  for (const std::string& item : kWrapperItems) {
    EXPECT_EQ(fileTree(applications_ + "/" + item), fileTree(wrapper_ + "/" + item));
  }
}

void InstallationScene::expectFailed(int code, const Fault& fault) {
  Lines lines = log_.lines();
  SCOPED_TRACE("code " + std::to_string(code) + ::testing::PrintToString(lines));
  std::string line = takeFront(lines);
  while (line.starts_with("ERROR -- Could not delete " + applications_ + "/")) {
    takeFront(lines);
    line = takeFront(lines);
  }
  if (code == kExistingCopyNotTrashed) {
    EXPECT_EQ(line, "ERROR -- Could not trash '" + destination_ + "'");
    EXPECT_EQ(takeFront(lines), "ERROR -- Could not trash existing " + destination_);
    expectOldCopyKept(true);
  } else {
    EXPECT_EQ(code, kCopyFailed);
    EXPECT_THAT(line, ::testing::AnyOf(
                          "ERROR -- Could not copy myself to " + destination_,
                          ::testing::StartsWith("ERROR -- Could not copy auxiliary item to " + applications_),
                          "ERROR -- Could not copy wrapper to " + applications_));
  }
  expectReason(takeFront(lines), fault);
  EXPECT_EQ(lines, Lines{});
  expectNoStaging();
}

// What is there is whole, whatever has happened, and the old copy is somewhere.
void InstallationScene::expectNothingHalf() {
  if (files::itemExists(destination_)) {
    EXPECT_THAT(fileTree(destination_), ::testing::AnyOf(product_, old_));
  }
  if (furniture_.oldCopy && fileTree(destination_) != old_) expectOldCopyKept(false);
}

void InstallationScene::expectOldCopyKept(bool inPlace) {
  if (!furniture_.oldCopy) return;
  if (inPlace) {
    EXPECT_EQ(fileTree(destination_), old_);
    return;
  }
  int copies = 0;
  for (const std::string& name : files::entries(trash_ + "/files").value_or(Lines{})) {
    if (fileTree(trash_ + "/files/" + name) != old_) continue;
    ++copies;
    EXPECT_THAT(readFile(trash_ + "/info/" + name + ".trashinfo"),
                ::testing::StartsWith("[Trash Info]\nPath=" + destination_ + "\nDeletionDate="));
  }
  EXPECT_EQ(copies, 1);
}

void InstallationScene::expectNoStaging() {
  Lines known = kWrapperItems;
  known.push_back(furniture_.product);
  for (const std::string& name : files::entries(applications_).value_or(Lines{})) {
    EXPECT_THAT(known, ::testing::Contains(name));
  }
  for (const std::string& name : files::entries(scratch_ / "place").value_or(Lines{})) {
    EXPECT_EQ(name, "Applications");
  }
}

}  // namespace kr::testing
