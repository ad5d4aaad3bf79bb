// Renaming where the file system cannot both rename and refuse a name that is taken.
#pragma once

#include <string>
#include <system_error>

namespace kr::posix {

// Looks whether the new name is free, then renames: EEXIST when it is taken. What comes into being between
// the two can only be lost when it is a file, or an empty folder. Nothing raises.
[[nodiscard]] std::error_code renameIfFree(int from, const std::string& old, int to,
                                           const std::string& name) noexcept;

}  // namespace kr::posix
