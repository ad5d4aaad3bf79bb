// Text files whose encoding nothing in their bytes tells. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kr::platform {

// The text of a file in the encoding that the system takes it for; none where it cannot tell. `contents` is
// what the file holds.
[[nodiscard]] std::optional<std::u16string> detectedText(const std::string& path, std::string_view contents);

}  // namespace kr::platform
