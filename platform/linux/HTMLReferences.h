// Character references of HTML in the forms that the parser of this system does not know by itself. Any
// thread.
#pragma once

#include <string>
#include <string_view>

namespace kr::platform {

// The source text with its references in the parser's form: "&copy 2020" gets its semicolon, "&AMP;" its
// small letters, "&#150;" becomes the character that it has always meant on the web, and references to no
// character become U+FFFD. What is no reference stays.
[[nodiscard]] std::u16string withPlainReferences(std::u16string_view html);

}  // namespace kr::platform
