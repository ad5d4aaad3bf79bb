#include "platform/linux/TrashNote.h"

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <vector>

#include "platform/Paths.h"
#include "platform/linux/GLibOwner.h"
#include "platform/posix/FileDescriptor.h"
#include "platform/posix/Files.h"

namespace kr::platform {
namespace {

std::string text(const std::string& path) {
  const glib::String escaped(g_uri_escape_string(path.c_str(), "/", FALSE));
  GDateTime* now = g_date_time_new_now_local();
  const glib::String date(g_date_time_format(now, "%Y-%m-%dT%H:%M:%S"));
  g_date_time_unref(now);
  return std::string("[Trash Info]\nPath=") + escaped.get() + "\nDeletionDate=" + date.get() + "\n";
}

bool isItem(const std::string& path, const struct stat& item) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && status.st_dev == item.st_dev && status.st_ino == item.st_ino;
}

// The name that the item has in the folder; empty when it is not there.
std::string nameIn(const std::string& folder, std::string_view likely, const struct stat& item) {
  if (isItem(paths::joined(folder, likely), item)) return std::string(likely);
  for (std::string& name : files::entries(folder).value_or(std::vector<std::string>{})) {
    if (isItem(paths::joined(folder, name), item)) return std::move(name);
  }
  return "";
}

bool hasContents(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && status.st_size > 0;
}

bool writeNote(const std::string& note, const std::string& path) {
  posix::FileDescriptor file(
      ::open(note.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, S_IRUSR | S_IWUSR));
  return file && writeTrashNote(file.get(), path) && ::close(file.release()) == 0;
}

}  // namespace

bool writeTrashNote(int file, const std::string& path) {
  const std::string note = text(path);
  for (std::string_view left = note; !left.empty();) {
    const ssize_t count = ::write(file, left.data(), left.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    left.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

std::optional<Failure> completeTrashNote(const std::string& path, const struct stat& item) {
  const std::string trash = paths::joined(g_get_user_data_dir(), "Trash");
  const std::string name = nameIn(trash + "/files", paths::lastComponent(path), item);
  const std::string note = trash + "/info/" + name + ".trashinfo";
  if (name.empty() || hasContents(note) || writeNote(note, path)) return std::nullopt;
  const int error = errno;
  const std::string trashed = trash + "/files/" + name;
  // Where it cannot go back either, it is at least in the Trash.
  if (::renameat2(AT_FDCWD, trashed.c_str(), AT_FDCWD, path.c_str(), RENAME_NOREPLACE) != 0)
    return std::nullopt;
  ::unlink(note.c_str());
  return Failure{"note in the Trash where it comes from:", path, {error, std::generic_category()}};
}

}  // namespace kr::platform
