// The source text of HTML documents, in the encoding that they name themselves. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace kr {

// The text in the character set that the first "charset" behind the first "<meta" names; in ISO Latin-1 where
// there is none, its name is not known, or the bytes are not valid in it. Bytes without "html" in them are
// looked at as UTF-16, too; that is logged.
//
// A name in quotation marks is not seen, and one with other characters than letters, digits and hyphens ends
// before them. That is meant.
[[nodiscard]] std::u16string decodedHTML(std::string_view bytes);

}  // namespace kr
