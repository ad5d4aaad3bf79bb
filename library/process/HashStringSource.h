// A text that names an application from run to run, to make a key from. UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace kr {

// "id:" and the identifier; where it is empty "sig:" and the signature; where that is empty or "????" "name:"
// and the name.
[[nodiscard]] std::string hashStringSource(std::string_view identifier, std::string_view signature,
                                           std::string_view name);

// The MD5 digest of the text as 32 lower-case hexadecimal digits.
[[nodiscard]] std::string hashString(std::string_view source);

}  // namespace kr
