#include "platform/linux/Trash.h"

#include <sys/stat.h>

#include <array>
#include <cerrno>

#include "platform/linux/GLibOwner.h"
#include "platform/linux/TrashLongName.h"
#include "platform/linux/TrashNote.h"

namespace kr::platform {
namespace {

struct Meaning {
  GIOErrorEnum code;
  int error;
};
constexpr std::array<Meaning, 10> kMeanings{{{G_IO_ERROR_NOT_FOUND, ENOENT},
                                             {G_IO_ERROR_PERMISSION_DENIED, EACCES},
                                             {G_IO_ERROR_NOT_SUPPORTED, ENOTSUP},
                                             {G_IO_ERROR_NO_SPACE, ENOSPC},
                                             {G_IO_ERROR_READ_ONLY, EROFS},
                                             {G_IO_ERROR_FILENAME_TOO_LONG, ENAMETOOLONG},
                                             {G_IO_ERROR_NOT_DIRECTORY, ENOTDIR},
                                             {G_IO_ERROR_EXISTS, EEXIST},
                                             {G_IO_ERROR_BUSY, EBUSY},
                                             {G_IO_ERROR_TOO_MANY_OPEN_FILES, EMFILE}}};

std::error_code meaning(const GError& error) {
  int number = EIO;
  for (const Meaning& row : kMeanings) {
    if (error.domain == G_IO_ERROR && error.code == row.code) number = row.error;
  }
  return {number, std::generic_category()};
}

}  // namespace

std::optional<Failure> moveToTrash(const std::string& path) {
  struct stat item {};
  const bool isKnown = ::lstat(path.c_str(), &item) == 0;
  const glib::Object<GFile> file(g_file_new_for_path(path.c_str()));
  GError* error = nullptr;
  if (g_file_trash(file.get(), nullptr, &error)) {
    return isKnown ? completeTrashNote(path, item) : std::nullopt;
  }
  const glib::Error owned(error);
  if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_FILENAME_TOO_LONG)) return moveLongNameToTrash(path);
  return Failure{std::string("move to the Trash (") + owned->message + ")", path, meaning(*owned)};
}

}  // namespace kr::platform
