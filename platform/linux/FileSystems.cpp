#include "platform/FileSystems.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>

#include "platform/Paths.h"
#include "platform/SystemServices.h"
#include "platform/linux/MountTable.h"
#include "platform/posix/Files.h"

namespace kr::platform {
namespace {

// Who waits for a server that is gone waits for ever.
constexpr std::chrono::milliseconds kPatience{40};

std::vector<Mount> mountTable() {
  return parseMountTable(files::contents("/proc/self/mountinfo").value_or(""));
}

struct Asked {
  int status = -1;
  std::uint64_t mount = 0;
};

// Of a file system only the kernel is asked, not who keeps its files.
Asked ask(const std::string& path) {
  struct statx information {};
  Asked asked;
  asked.status = ::statx(AT_FDCWD, path.c_str(), AT_STATX_DONT_SYNC, STATX_MNT_ID, &information);
  asked.mount = information.stx_mnt_id;
  return asked;
}

// None when no answer comes in time, or nobody can wait for one. The thread that waits is given up.
std::optional<Asked> askPatiently(const std::string& path) {
  struct Question {
    std::mutex mutex;
    std::condition_variable answered;
    std::optional<Asked> answer;
  };
  const auto question = std::make_shared<Question>();
  const auto wait = [question, path] {
    const Asked answer = ask(path);
    const std::lock_guard lock(question->mutex);
    question->answer = answer;
    question->answered.notify_one();
  };
  try {
    std::thread(wait).detach();
  } catch (const std::system_error&) {
    return std::nullopt;
  }
  std::unique_lock lock(question->mutex);
  question->answered.wait_for(lock, kPatience, [&] { return question->answer.has_value(); });
  return question->answer;
}

std::optional<std::string> userName() {
  passwd entry{};
  passwd* found = nullptr;
  std::vector<char> buffer(1 << 14);
  if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) {
    return std::nullopt;
  }
  return std::string(found->pw_name);
}

class MountedFileSystems final : public FileSystems {
 public:
  FileSystemType type(const std::string& path) override {
    const std::vector<Mount> table = mountTable();
    const Mount* byText = mountOf(table, path);
    if (byText == nullptr || !mayNotAnswer(byText->type)) return answer(table, ask(path));
    if (const std::optional<Asked> asked = askPatiently(path)) return answer(table, *asked);
    return {.status = 0, .name = byText->type};
  }

  // Here links are what aliases are elsewhere.
  std::optional<std::string> aliasTarget(const std::string& path) override {
    struct stat item {};
    const std::string link(paths::withoutTrailingSlashes(path));
    if (::lstat(link.c_str(), &item) != 0 || !S_ISLNK(item.st_mode)) return std::nullopt;
    return files::resolved(link);
  }

  // Desktops give every user a folder for volumes; what the machine's owner mounts lies beside them.
  std::vector<std::string> volumeFolders() override {
    std::vector<std::string> folders;
    if (const auto user = userName()) folders = {"/run/media/" + *user, "/media/" + *user};
    folders.insert(folders.end(), {"/media", "/mnt", "/Volumes"});
    return folders;
  }

 private:
  static FileSystemType answer(const std::vector<Mount>& table, const Asked& asked) {
    const Mount* mount = asked.status == 0 ? mountWithID(table, asked.mount) : nullptr;
    return {.status = asked.status, .name = mount != nullptr ? mount->type : ""};
  }
};

}  // namespace

FileSystems& systemFileSystems() noexcept {
  static MountedFileSystems& fileSystems = *new MountedFileSystems;
  return fileSystems;
}

}  // namespace kr::platform
