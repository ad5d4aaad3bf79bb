#include "platform/linux/DesktopEntry.h"

#include "platform/Paths.h"
#include "platform/linux/GLibOwner.h"
#include "platform/posix/Files.h"

namespace kr::platform {
namespace {

constexpr const char* kGroup = G_KEY_FILE_DESKTOP_GROUP;
constexpr std::string_view kEscapedInQuotes = "\"`$\\";
constexpr const char* kRefreshTool = "update-desktop-database";

void set(GKeyFile* file, const char* key, const std::string& value) {
  g_key_file_set_string(file, kGroup, key, value.c_str());
}

// A file name out of an identifier that anybody may have written.
std::string fileName(const std::string& identifier) {
  std::string name = identifier;
  for (char& character : name) {
    if (character == '/' || static_cast<unsigned char>(character) < 0x20) character = '_';
  }
  return name + ".desktop";
}

// The desktop finds new entries by itself; the tool only speeds up the look-up by document type, and may be
// missing.
void refreshDatabase(const std::string& folder) {
  const glib::String tool(g_find_program_in_path(kRefreshTool));
  if (!tool) return;
  std::string argument = folder;
  char* words[] = {tool.get(), argument.data(), nullptr};
  g_spawn_async(nullptr, words, nullptr,
                static_cast<GSpawnFlags>(G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL), nullptr,
                nullptr, nullptr, nullptr);
}

}  // namespace

std::string quotedForExec(std::string_view path) {
  std::string text = "\"";
  for (const char character : path) {
    if (kEscapedInQuotes.find(character) != std::string_view::npos) text += '\\';
    if (character == '%') text += '%';  // a single one begins a field code
    text += character;
  }
  return text + '"';
}

std::error_code registerEntry(const ApplicationEntry& entry) {
  for (const std::string* text : {&entry.identifier, &entry.name, &entry.executable, &entry.iconPath}) {
    if (!g_utf8_validate(text->data(), static_cast<gssize>(text->size()), nullptr)) {
      return std::make_error_code(std::errc::illegal_byte_sequence);
    }
  }
  const glib::KeyFile file(g_key_file_new());
  set(file.get(), G_KEY_FILE_DESKTOP_KEY_TYPE, G_KEY_FILE_DESKTOP_TYPE_APPLICATION);
  set(file.get(), G_KEY_FILE_DESKTOP_KEY_NAME, entry.name);
  set(file.get(), G_KEY_FILE_DESKTOP_KEY_EXEC, quotedForExec(entry.executable));
  set(file.get(), G_KEY_FILE_DESKTOP_KEY_TRY_EXEC, entry.executable);
  if (!entry.iconPath.empty()) set(file.get(), G_KEY_FILE_DESKTOP_KEY_ICON, entry.iconPath);

  const std::string folder = paths::joined(g_get_user_data_dir(), "applications");
  files::makeFolders(folder);
  GError* raw = nullptr;
  if (!g_key_file_save_to_file(file.get(), paths::joined(folder, fileName(entry.identifier)).c_str(), &raw)) {
    const glib::Error error(raw);
    return std::make_error_code(std::errc::io_error);
  }
  refreshDatabase(folder);
  return {};
}

}  // namespace kr::platform
