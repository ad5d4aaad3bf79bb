#include "platform/replace/Replacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>
#include <vector>

#include "platform/posix/Files.h"
#include "platform/posix/LockedFolder.h"

namespace kr::platform::replace {
namespace {

using posix::FileDescriptor;

// What the hidden folder holds: the copy, later the old item; and, in a folder of its own and under its own
// name, an old item that had to be moved aside before the copy could get its name.
constexpr const char* kItem = "item";
constexpr const char* kAside = "aside";

std::error_code lastError() noexcept {
  return {errno, std::generic_category()};
}

bool isThere(int folder, const std::string& name, const Identity& identity) {
  struct stat status {};
  return ::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
         Identity{status.st_dev, status.st_ino} == identity;
}

std::optional<Failure> removeIfThere(int folder, const char* name) {
  struct stat status {};
  if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0 && errno == ENOENT) return std::nullopt;
  return removeEntry({folder, name, name});
}

// Whether the new folder is this user's, and nobody may enter it whatever the folder above passes on.
std::error_code makeOwn(int folder) {
  struct stat status {};
  if (::fstat(folder, &status) != 0) return lastError();
  if (status.st_uid != ::geteuid()) return std::make_error_code(std::errc::operation_not_permitted);
  if (const std::error_code error = removeInheritedAccessLists(folder)) return error;
  return ::fchmod(folder, S_IRWXU) == 0 ? std::error_code{} : lastError();
}

// The hidden folder. Its contents are reached through its descriptor alone: whoever may rename it in the
// parent folder still leads nobody elsewhere.
class HiddenFolder {
 public:
  HiddenFolder(int parent, std::string name, FileDescriptor folder)
      : parent_(parent), name_(std::move(name)), folder_(std::move(folder)) {}
  ~HiddenFolder() { (void)remove(); }
  HiddenFolder(const HiddenFolder&) = delete;
  HiddenFolder& operator=(const HiddenFolder&) = delete;

  [[nodiscard]] int folder() const noexcept { return folder_.get(); }

  // Leaves it for the next run: it holds what is nowhere else.
  void keep() noexcept { isKept_ = true; }

  std::optional<Failure> remove() {
    if (std::exchange(isKept_, true)) return std::nullopt;
    for (const char* name : {kItem, kAside}) {
      if (auto failed = removeIfThere(folder_.get(), name)) return failed;
    }
    if (::unlinkat(parent_, name_.c_str(), AT_REMOVEDIR) != 0) return Failure{"delete", name_, lastError()};
    return std::nullopt;
  }

 private:
  int parent_;
  std::string name_;
  FileDescriptor folder_;
  bool isKept_ = false;
};

// Moves what killed processes had moved aside back to its name. False when an item has to stay there.
bool putBack(int hidden, int parent) {
  const FileDescriptor aside = openFolder(hidden, kAside);
  if (!aside) return errno == ENOENT;
  const auto names = files::entries(aside.get());
  if (!names) return false;
  return std::all_of(names->begin(), names->end(), [&](const std::string& name) {
    const std::error_code error = renameExclusively(aside.get(), name, parent, name);
    return !error || error == std::errc::file_exists;
  });
}

class Replacement {
 public:
  Replacement(HiddenFolder& hidden, const Entry& destination, const std::optional<Identity>& existing)
      : hidden_(hidden), destination_(destination), existing_(existing) {}

  // Gives the copy its name. After a failure the old item has it.
  std::error_code place() {
    if (!existing_) {
      return renameExclusively(hidden_.folder(), kItem, destination_.folder, destination_.name);
    }
    const std::error_code error = exchange();
    if (error == std::errc::not_supported) return moveAsideAndPlace(*existing_);
    if (error || isThere(hidden_.folder(), kItem, *existing_)) return error;
    // Somebody else's: back with it.
    if (exchange() && !moveAside(hidden_.folder(), kItem)) hidden_.keep();
    return another();
  }

 private:
  static std::error_code another() noexcept { return {ESTALE, std::generic_category()}; }

  [[nodiscard]] std::error_code exchange() const {
    return exchangeNames(hidden_.folder(), kItem, destination_.folder, destination_.name);
  }

  // Moves an item to where a next run finds it as the one that had the destination's name.
  std::error_code moveAside(int folder, const char* name) {
    if (::mkdirat(hidden_.folder(), kAside, S_IRWXU) != 0) return lastError();
    aside_ = openFolder(hidden_.folder(), kAside);
    if (!aside_ || ::renameat(folder, name, aside_.get(), destination_.name.c_str()) != 0) return lastError();
    return {};
  }

  // In two steps, between which nothing has the name. Who is killed there leaves it to clearLeftovers().
  std::error_code moveAsideAndPlace(const Identity& existing) {
    const char* name = destination_.name.c_str();
    std::error_code error = moveAside(destination_.folder, name);
    if (error) return error;
    error = isThere(aside_.get(), name, existing)
                ? renameExclusively(hidden_.folder(), kItem, destination_.folder, name)
                : another();
    if (error) {
      if (renameExclusively(aside_.get(), name, destination_.folder, name)) hidden_.keep();
      return error;
    }
    // From here on it is waste, whatever happens.
    if (::renameat(aside_.get(), name, hidden_.folder(), kItem) != 0) hidden_.keep();
    return {};
  }

  HiddenFolder& hidden_;
  const Entry& destination_;
  const std::optional<Identity>& existing_;
  FileDescriptor aside_;
};

}  // namespace

Outcome replaceEntry(const Entry& source, const Entry& destination, const std::optional<Identity>& existing) {
  const auto failed = [](Stage stage, Failure failure) {
    return Outcome{std::pair{stage, std::move(failure)}, std::nullopt};
  };
  std::string name;
  FileDescriptor folder;
  if (const std::error_code error = posix::createLockedFolder(destination.folder, kPrefix, name, folder)) {
    return failed(Stage::copy, {"create a folder beside", destination.path, error});
  }
  if (const std::error_code error = makeOwn(folder.get())) {
    ::unlinkat(destination.folder, name.c_str(), AT_REMOVEDIR);
    return failed(Stage::copy, {"have a folder of one's own beside", destination.path, error});
  }
  HiddenFolder hidden(destination.folder, std::move(name), std::move(folder));

  if (auto failure = copyEntry(source, {hidden.folder(), kItem, destination.path})) {
    return failed(Stage::copy, std::move(*failure));
  }
  // A crash of the system must not show the name with files whose contents never reached the disk.
  if (const std::error_code error = bringToDisk(hidden.folder())) {
    return failed(Stage::copy, {"write to the disk", destination.path, error});
  }
  if (const std::error_code error = Replacement(hidden, destination, existing).place()) {
    return failed(Stage::exchange, {"give the copy the name", destination.path, error});
  }
  (void)::fsync(destination.folder);
  return {std::nullopt, hidden.remove()};
}

void clearLeftovers(int folder) {
  for (const std::string& name : files::entries(folder).value_or(std::vector<std::string>{})) {
    if (!posix::isLockedFolderName(kPrefix, name)) continue;
    FileDescriptor abandoned = posix::openAbandonedFolder(folder, name);
    struct stat status {};
    if (!abandoned || ::fstat(abandoned.get(), &status) != 0 || status.st_uid != ::geteuid()) continue;
    // A folder of another kind that somebody has given such a name stays.
    const auto names = files::entries(abandoned.get());
    const auto isOurs = [](const std::string& item) { return item == kItem || item == kAside; };
    if (!names || !std::all_of(names->begin(), names->end(), isOurs)) continue;
    const bool isWaste = putBack(abandoned.get(), folder);
    HiddenFolder hidden(folder, name, std::move(abandoned));
    if (!isWaste) hidden.keep();
  }
}

}  // namespace kr::platform::replace
