#include "library/text/NumericOrder.h"

#include <algorithm>

namespace kr {
namespace {

bool isDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}

// Takes the run of digits off the front of the text: its digits without leading zeros.
std::u16string_view takeNumber(std::u16string_view& text) {
  const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
  std::u16string_view number = text.substr(0, static_cast<std::size_t>(end - text.begin()));
  text.remove_prefix(number.size());
  number.remove_prefix(std::min(number.find_first_not_of(u'0'), number.size()));
  return number;
}

}  // namespace

std::weak_ordering numericOrder(std::u16string_view one, std::u16string_view other) noexcept {
  while (!one.empty() && !other.empty()) {
    if (isDigit(one.front()) && isDigit(other.front())) {
      const std::u16string_view number = takeNumber(one);
      const std::u16string_view otherNumber = takeNumber(other);
      if (number.size() != otherNumber.size()) return number.size() <=> otherNumber.size();
      if (number != otherNumber) return number <=> otherNumber;
    } else {
      if (one.front() != other.front()) return one.front() <=> other.front();
      one.remove_prefix(1);
      other.remove_prefix(1);
    }
  }
  return one.size() <=> other.size();
}

}  // namespace kr
