// Names that change hands in one step.
#pragma once

#include <string>
#include <system_error>

namespace kr::platform::copy {

// Gives the item in the open folder `from` a name in the open folder `to`, at which there must be nothing
// (file_exists).
[[nodiscard]] std::error_code renameExclusively(int from, const std::string& old, int to,
                                                const std::string& name) noexcept;

// Gives each of the two items the other one's name. `not_supported` where the file system cannot.
[[nodiscard]] std::error_code exchangeNames(int folder, const std::string& name, int otherFolder,
                                            const std::string& otherName) noexcept;

}  // namespace kr::platform::copy
