#include "platform/replace/Replacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/posix/Files.h"
#include "platform/posix/LastError.h"
#include "platform/posix/LockedFolder.h"

namespace kr::platform::replace {
namespace {

using posix::FileDescriptor;
using posix::lastError;

// What the hidden folder holds: the copy, later the old item; and, in a folder of its own and under its own
// name, an item that had to be moved aside. Before the names of others come into play, both names are
// followed by the file numbers of copy and old item: whatever else gets here is not this program's to delete.
constexpr std::string_view kItem = "item";
constexpr std::string_view kAside = "aside";

std::string ownNumbers(const Identity& copy, const Identity& existing) {
  return "-" + std::to_string(copy.number) + "-" + std::to_string(existing.number);
}

// Whether an item's name, or a name with the numbers of ownNumbers(), has the kind `kind`.
bool isOfKind(std::string_view name, std::string_view kind) {
  if (!name.starts_with(kind)) return false;
  name.remove_prefix(kind.size());
  return name.empty() || (name.front() == '-' && name.find_first_not_of("-0123456789") == name.npos &&
                          std::count(name.begin(), name.end(), '-') == 2);
}

// Whether the item is one of those whose numbers are in `name`. A name without numbers is that of a copy.
bool isOwn(std::string_view name, int folder, const std::string& item) {
  struct stat status {};
  if (::fstatat(folder, item.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return errno == ENOENT;
  const std::size_t numbers = name.find('-');
  if (numbers == name.npos) return true;
  return (std::string(name.substr(numbers)) + "-").find("-" + std::to_string(status.st_ino) + "-") !=
         std::string::npos;
}

std::optional<Identity> identityOf(int folder, const std::string& name) {
  struct stat status {};
  if (::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
  return Identity{status.st_dev, status.st_ino};
}

bool isThere(int folder, const std::string& name, const Identity& identity) {
  return identityOf(folder, name) == identity;
}

std::optional<Failure> removeIfThere(int folder, const std::string& name) {
  struct stat status {};
  if (::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0 && errno == ENOENT)
    return std::nullopt;
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
  [[nodiscard]] const std::string& item() const noexcept { return item_; }
  [[nodiscard]] const std::string& aside() const noexcept { return aside_; }

  // Names what is in it after the only two items that it may delete.
  std::error_code mark(const Identity& existing) {
    const auto copy = identityOf(folder_.get(), item_);
    if (!copy) return lastError();
    const std::string numbers = ownNumbers(*copy, existing);
    const std::string marked = std::string(kItem) + numbers;
    if (::renameat(folder_.get(), item_.c_str(), folder_.get(), marked.c_str()) != 0) return lastError();
    item_ = marked;
    aside_ = std::string(kAside) + numbers;
    return {};
  }

  // Takes the names for those of its contents.
  void adopt(const std::string& name) { (isOfKind(name, kItem) ? item_ : aside_) = name; }

  // Leaves it for the next run: it holds what is nowhere else.
  void keep() noexcept { isKept_ = true; }

  std::optional<Failure> remove() {
    if (std::exchange(isKept_, true)) return std::nullopt;
    for (const std::string& name : {item_, aside_}) {
      if (auto failed = removeIfThere(folder_.get(), name)) return failed;
    }
    if (::unlinkat(parent_, name_.c_str(), AT_REMOVEDIR) != 0) return Failure{"delete", name_, lastError()};
    return std::nullopt;
  }

 private:
  int parent_;
  std::string name_;
  FileDescriptor folder_;
  std::string item_{kItem};
  std::string aside_{kAside};
  bool isKept_ = false;
};

// Moves what killed or failed processes had moved aside back to its name. False when an item has to stay
// there: only that of which the name has been taken since by its copy is waste.
bool putBack(int hidden, const std::string& aside, int parent) {
  const FileDescriptor folder = openFolder(hidden, aside);
  if (!folder) return errno == ENOENT;
  const auto names = files::entries(folder.get());
  if (!names) return false;
  return std::all_of(names->begin(), names->end(), [&](const std::string& name) {
    const std::error_code error = renameExclusively(folder.get(), name, parent, name);
    return !error || (error == std::errc::file_exists && isOwn(aside, folder.get(), name));
  });
}

class Replacement {
 public:
  Replacement(HiddenFolder& hidden, const Entry& destination, const std::optional<Identity>& existing)
      : hidden_(hidden), destination_(destination), existing_(existing) {}

  // Gives the copy its name. After a failure the old item has it.
  std::error_code place() {
    if (!existing_) {
      return renameExclusively(hidden_.folder(), hidden_.item(), destination_.folder, destination_.name);
    }
    if (const std::error_code error = hidden_.mark(*existing_)) return error;
    const std::error_code error = exchange();
    if (error == std::errc::not_supported) return moveAsideAndPlace(*existing_);
    if (error || isThere(hidden_.folder(), hidden_.item(), *existing_)) return error;
    // Somebody else's: back with it.
    if (exchange()) {
      // Where this fails too, it stays where it is.
      (void)moveAside(hidden_.folder(), hidden_.item().c_str());
      hidden_.keep();
    }
    return another();
  }

 private:
  static std::error_code another() noexcept { return {ESTALE, std::generic_category()}; }

  [[nodiscard]] std::error_code exchange() const {
    return exchangeNames(hidden_.folder(), hidden_.item(), destination_.folder, destination_.name);
  }

  // Moves an item to where a next run finds it as the one that had the destination's name.
  std::error_code moveAside(int folder, const char* name) {
    if (::mkdirat(hidden_.folder(), hidden_.aside().c_str(), S_IRWXU) != 0) return lastError();
    aside_ = openFolder(hidden_.folder(), hidden_.aside());
    if (!aside_ || ::renameat(folder, name, aside_.get(), destination_.name.c_str()) != 0) return lastError();
    return {};
  }

  // In two steps, between which nothing has the name. Who is killed there leaves it to clearLeftovers().
  std::error_code moveAsideAndPlace(const Identity& existing) {
    const char* name = destination_.name.c_str();
    std::error_code error = moveAside(destination_.folder, name);
    if (error) return error;
    error = isThere(aside_.get(), name, existing)
                ? renameExclusively(hidden_.folder(), hidden_.item(), destination_.folder, name)
                : another();
    if (error) {
      if (renameExclusively(aside_.get(), name, destination_.folder, name)) hidden_.keep();
      return error;
    }
    // From here on it is waste, whatever happens.
    if (::renameat(aside_.get(), name, hidden_.folder(), hidden_.item().c_str()) != 0) hidden_.keep();
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

  if (auto failure = copyEntry(source, {hidden.folder(), hidden.item(), destination.path})) {
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
    const auto isOurs = [](const std::string& item) {
      return isOfKind(item, kItem) || isOfKind(item, kAside);
    };
    if (!names || !std::all_of(names->begin(), names->end(), isOurs)) continue;
    const int contents = abandoned.get();
    HiddenFolder hidden(folder, name, std::move(abandoned));
    bool isWaste = true;
    for (const std::string& item : *names) {
      hidden.adopt(item);
      const bool isItem = isOfKind(item, kItem);
      isWaste = (isItem ? isOwn(item, contents, item) : putBack(contents, item, folder)) && isWaste;
    }
    if (!isWaste) hidden.keep();
  }
}

}  // namespace kr::platform::replace
