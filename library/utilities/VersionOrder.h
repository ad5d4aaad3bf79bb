// Versions of products: numbers between dots, and after them, where it is no release yet, the letter of the
// stage of development and the number of the build, as in "1.2b4". Any thread.
#pragma once

#include <compare>
#include <string_view>

namespace kr {

// The place of a letter in the order of the stages: p 0, d (development) 1, a (alpha) 2, b (beta) 3,
// f (final) 4; a space, which stands for a release, 5. Every other character is 0.
[[nodiscard]] unsigned developmentStage(char16_t letter) noexcept;

// Which version comes first. What stands before the first letter decides, then the stage of that letter, then
// what stands behind it; both texts compare as numericOrder() has it. A version without a letter has the
// stage of a release and the build 0. Nothing is added to the shorter one: 1.2 comes before 1.2.0.
[[nodiscard]] std::weak_ordering versionOrder(std::u16string_view one, std::u16string_view other);

// The digits and dots at the beginning.
[[nodiscard]] std::u16string_view plainVersion(std::u16string_view version) noexcept;

}  // namespace kr
