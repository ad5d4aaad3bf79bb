// A quick look into small XML texts, without a parser. Any thread.
#pragma once

#include <optional>
#include <string_view>

namespace kr {

// What stands between the first "<key>" and the next "</key>" behind it, both taken literally; none when one
// of them is missing.
[[nodiscard]] std::optional<std::u16string_view> xmlElement(std::u16string_view text,
                                                            std::u16string_view key);

}  // namespace kr
