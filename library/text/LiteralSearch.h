// Searching a text for another one, unit by unit, in time that grows with the two lengths and no faster,
// whatever the texts hold. Any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kr {

inline constexpr std::size_t kNotFound = std::u16string_view::npos;

// The first place of the unit at or after `from`; kNotFound when there is none.
[[nodiscard]] std::size_t findUnit(std::u16string_view text, char16_t unit, std::size_t from = 0);

// Looks for one text, as often as it is asked. The text looked for must outlive the search.
class LiteralSearch {
 public:
  explicit LiteralSearch(std::u16string_view wanted) : wanted_(wanted) {}

  // The first place at or after `from` where the wanted text stands; kNotFound when there is none. The empty
  // text is found nowhere.
  [[nodiscard]] std::size_t find(std::u16string_view text, std::size_t from = 0);

 private:
  [[nodiscard]] std::size_t findWithoutGoingBack(std::u16string_view text, std::size_t from);

  std::u16string_view wanted_;
  std::vector<std::size_t> borders_;  // empty until the search has to be careful
};

// The text with every occurrence replaced, from left to right, none of them overlapping; none when there is
// no occurrence.
[[nodiscard]] std::optional<std::u16string> replacedLiterally(std::u16string_view text,
                                                              std::u16string_view wanted,
                                                              std::u16string_view replacement);

}  // namespace kr
