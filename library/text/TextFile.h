// Text files in the encoding that fits them best. Any thread.
#pragma once

#include <optional>
#include <string>

namespace kr {

// The text of a file: in the encoding that its mark tells, where it is valid in that; the mark is no part of
// the text. Else as the system takes it; else the most plausible one as UTF-16, Mac Roman, Latin-1 and UTF-8.
// None when the file cannot be read.
[[nodiscard]] std::optional<std::u16string> textOfFile(const std::string& path);

}  // namespace kr
