// The desktop entry that makes an application bundle known to the desktop: its text, and its place in the
// database of the user. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace kr::platform {

struct ApplicationEntry {
  std::string identifier;  // of the application; names the entry's file
  std::string name;        // for people
  std::string executable;  // path
  std::string iconPath;    // empty for none
};

// A path as the first word of an entry's command line, quoted so that the desktop reads the same path again.
[[nodiscard]] std::string quotedForExec(std::string_view path);

// Writes the entry into the user's applications folder, in place of an earlier one, and refreshes the
// database of the desktop. An error when a text is not valid UTF-8, which no entry can hold, or when the file
// cannot be written.
[[nodiscard]] std::error_code registerEntry(const ApplicationEntry& entry);

}  // namespace kr::platform
