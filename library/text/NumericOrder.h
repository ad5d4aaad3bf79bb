// The order of texts with numbers in them. Any thread.
#pragma once

#include <compare>
#include <optional>
#include <string_view>

namespace kr {

// Compares from the start: where both texts have decimal digits, the whole runs of digits by their value, of
// any length and whatever zeros they begin with; all else by code point. A text that the other one begins
// with comes first. So "a9" comes before "a10", and "a09" is equal to "a9".
[[nodiscard]] std::strong_ordering numericOrder(std::u16string_view one, std::u16string_view other);

// The order of two texts that begin with these; none where the beginnings do not decide it.
[[nodiscard]] std::optional<std::strong_ordering> numericOrderOfBeginnings(std::u16string_view one,
                                                                           std::u16string_view other);

// The same two without regard to case, which the system folds.
[[nodiscard]] std::strong_ordering caseInsensitiveNumericOrder(std::u16string_view one,
                                                               std::u16string_view other);
[[nodiscard]] std::optional<std::strong_ordering> caseInsensitiveNumericOrderOfBeginnings(
    std::u16string_view one, std::u16string_view other);

}  // namespace kr
