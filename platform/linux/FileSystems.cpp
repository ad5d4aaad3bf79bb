#include "platform/FileSystems.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "platform/Paths.h"
#include "platform/SystemServices.h"
#include "platform/linux/MountTable.h"
#include "platform/linux/PatientQuestions.h"
#include "platform/posix/Accounts.h"
#include "platform/posix/Files.h"

namespace kr::platform {
namespace {

std::vector<Mount> mountTable() {
  return parseMountTable(files::contents("/proc/self/mountinfo").value_or(""));
}

struct Asked {
  int status = -1;
  std::uint64_t mount = 0;
  std::string place;  // the path without links where the kernel does not tell the mount (before Linux 5.8)
};

// Of a file system only the kernel is asked, not who keeps its files.
Asked ask(const std::string& path) {
  struct statx information {};
  Asked asked;
  asked.status = ::statx(AT_FDCWD, path.c_str(), AT_STATX_DONT_SYNC, STATX_MNT_ID, &information);
  asked.mount = information.stx_mnt_id;
  const bool tellsMount = (information.stx_mask & STATX_MNT_ID) != 0;
  if (asked.status == 0 && !tellsMount) asked.place = files::resolved(path).value_or("");
  return asked;
}

FileSystemType answer(const std::vector<Mount>& table, const Asked& asked) {
  if (asked.status != 0) return {.status = asked.status, .name = ""};
  const Mount* mount = asked.place.empty() ? mountWithID(table, asked.mount) : mountOf(table, asked.place);
  return {.status = 0, .name = mount != nullptr ? mount->type : ""};
}

// Here links are what aliases are elsewhere.
std::optional<std::string> targetOfLink(const std::string& path) {
  struct stat item {};
  const std::string link(paths::withoutTrailingSlashes(path));
  if (::lstat(link.c_str(), &item) != 0 || !S_ISLNK(item.st_mode)) return std::nullopt;
  return files::resolved(link);
}

// A path may lead anywhere, by links and by "..": as long as a file system is mounted that may not answer, no
// question is put without a limit to the time.
class MountedFileSystems final : public FileSystems {
 public:
  FileSystemType type(const std::string& path) override {
    const std::vector<Mount> table = mountTable();
    if (!someMayNotAnswer(table)) return answer(table, ask(path));
    if (const auto asked = types_.ask(path, [path] { return ask(path); })) return answer(table, *asked);
    const Mount* byText = mountOf(table, path);
    if (byText == nullptr || !mayNotAnswer(byText->type)) return {.status = -1, .name = ""};
    return {.status = 0, .name = byText->type};
  }

  std::optional<std::string> aliasTarget(const std::string& path) override {
    if (!someMayNotAnswer(mountTable())) return targetOfLink(path);
    return targets_.ask(path, [path] { return targetOfLink(path); }).value_or(std::nullopt);
  }

  // Desktops give every user a folder for volumes; what the machine's owner mounts lies beside them.
  std::vector<std::string> volumeFolders() override {
    std::vector<std::string> folders;
    if (const auto user = posix::ownUserName()) folders = {"/run/media/" + *user, "/media/" + *user};
    folders.insert(folders.end(), {"/media", "/mnt", "/Volumes"});
    return folders;
  }

 private:
  static bool someMayNotAnswer(const std::vector<Mount>& table) {
    return std::any_of(table.begin(), table.end(),
                       [](const Mount& mount) { return mayNotAnswer(mount.type); });
  }

  PatientQuestions<Asked> types_;
  PatientQuestions<std::optional<std::string>> targets_;
};

}  // namespace

FileSystems& systemFileSystems() noexcept {
  static MountedFileSystems& fileSystems = *new MountedFileSystems;
  return fileSystems;
}

}  // namespace kr::platform
