#include "library/text/NumericOrder.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <string>

#include "library/text/CodePoints.h"
#include "platform/CaseFolding.h"

namespace kr {
namespace {

constexpr bool isDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}

// Takes the digits that the text begins with off its front.
std::u16string_view takeDigits(std::u16string_view& text) {
  std::size_t length = 0;
  while (length < text.size() && isDigit(text[length])) ++length;
  const std::u16string_view digits = text.substr(0, length);
  text.remove_prefix(length);
  return digits;
}

std::strong_ordering orderOfNumbers(std::u16string_view one, std::u16string_view other) {
  for (std::u16string_view* digits : {&one, &other}) {
    digits->remove_prefix(std::min(digits->find_first_not_of(u'0'), digits->size()));
  }
  if (one.size() != other.size()) return one.size() <=> other.size();
  return one.compare(other) <=> 0;
}

// The length of what both texts begin with.
std::size_t equalLength(std::u16string_view one, std::u16string_view other) {
  constexpr std::size_t kBlock = 256;
  const std::size_t shorter = std::min(one.size(), other.size());
  std::size_t length = 0;
  while (length + kBlock <= shorter &&
         std::memcmp(one.data() + length, other.data() + length, kBlock * sizeof(char16_t)) == 0) {
    length += kBlock;
  }
  while (length < shorter && one[length] == other[length]) ++length;
  return length;
}

// The same, taken back to the start of the number or the pair of surrogates that it ends within.
std::size_t commonLength(std::u16string_view one, std::u16string_view other) {
  std::size_t length = equalLength(one, other);
  if (length == 0) return 0;
  if (startsWithPair(one.substr(length - 1)) || startsWithPair(other.substr(length - 1))) return length - 1;
  while (length > 0 && isDigit(one[length - 1])) --length;
  return length;
}

// None where the order depends on what follows the texts. Where nothing follows it always decides.
std::optional<std::strong_ordering> decide(std::u16string_view one, std::u16string_view other,
                                           bool somethingFollows) {
  for (;;) {
    const std::size_t common = commonLength(one, other);
    one.remove_prefix(common);
    other.remove_prefix(common);
    // The last unit may be half of a pair.
    if (somethingFollows && (one.size() < 2 || other.size() < 2)) return std::nullopt;
    if (one.empty() || other.empty()) return one.size() <=> other.size();
    if (!isDigit(one.front()) || !isDigit(other.front())) {
      return codePointAt(one, 0) <=> codePointAt(other, 0);
    }
    const std::u16string_view number = takeDigits(one);
    const std::u16string_view otherNumber = takeDigits(other);
    if (somethingFollows && (one.empty() || other.empty())) return std::nullopt;
    const std::strong_ordering order = orderOfNumbers(number, otherNumber);
    if (order != 0) return order;
  }
}

// A text without regard to case. Short texts in ASCII, which most are, need neither memory nor the system.
class FoldedText {
 public:
  explicit FoldedText(std::u16string_view text) {
    unsigned all = 0;
    if (text.size() <= few_.size()) {
      for (std::size_t index = 0; index < text.size(); ++index) {
        const char16_t unit = text[index];
        all |= unit;
        few_[index] = unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
      }
      folded_ = {few_.data(), text.size()};
    }
    if (text.size() > few_.size() || all >= 0x80) {
      many_ = platform::foldedCase(text);
      folded_ = many_;
    }
  }
  FoldedText(const FoldedText&) = delete;
  FoldedText& operator=(const FoldedText&) = delete;

  operator std::u16string_view() const { return folded_; }  // NOLINT: it is one

 private:
  std::array<char16_t, 128> few_;  // NOLINT: written before it is read
  std::u16string many_;
  std::u16string_view folded_;
};

}  // namespace

std::strong_ordering numericOrder(std::u16string_view one, std::u16string_view other) {
  return *decide(one, other, false);
}

std::optional<std::strong_ordering> numericOrderOfBeginnings(std::u16string_view one,
                                                             std::u16string_view other) {
  return decide(one, other, true);
}

std::strong_ordering caseInsensitiveNumericOrder(std::u16string_view one, std::u16string_view other) {
  return numericOrder(FoldedText(one), FoldedText(other));
}

std::optional<std::strong_ordering> caseInsensitiveNumericOrderOfBeginnings(std::u16string_view one,
                                                                            std::u16string_view other) {
  return numericOrderOfBeginnings(FoldedText(one), FoldedText(other));
}

}  // namespace kr
