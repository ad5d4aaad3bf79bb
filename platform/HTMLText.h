// The plain text of HTML. Main thread on macOS, whose own reader it is; any thread elsewhere.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kr::platform {

// What a reader sees of the document or the part of one: character references expanded, white space
// collapsed, one line for each paragraph, with a line break behind it. A break within a paragraph is U+2028,
// the items of a list have their marks between tabs. Scripts, styles and the title are left out. None where
// it is nothing that can be read as HTML.
[[nodiscard]] std::optional<std::u16string> textOfHTML(std::u16string_view html);

}  // namespace kr::platform
