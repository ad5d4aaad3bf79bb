// The order of texts in which a number counts by its value: "file 9" stands before "file 10". Any thread.
#pragma once

#include <compare>
#include <string_view>

namespace kr {

// Runs of the digits 0 to 9 compare by value, however long they are; all else compares by character code, and
// a beginning of another text stands before it. Texts that differ in leading zeros alone are equivalent.
// Every two texts can be compared, and the order is transitive.
[[nodiscard]] std::weak_ordering numericOrder(std::u16string_view one, std::u16string_view other) noexcept;

}  // namespace kr
