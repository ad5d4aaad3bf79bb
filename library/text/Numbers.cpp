#include "library/text/Numbers.h"

#include <algorithm>
#include <cstdlib>
#include <string>

#include "library/text/LeadingNumbers.h"
#include "library/text/Whitespace.h"

namespace kr {
namespace {

constexpr bool isDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}

constexpr bool isAlphanumericASCII(char16_t unit) {
  return isDigit(unit) || (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

constexpr bool isSign(char16_t unit) {
  return unit == u'-' || unit == u'+';
}

// What C skips before a number.
constexpr bool isBlank(char16_t unit) {
  return unit == u' ' || (unit >= 9 && unit <= 13);
}

// Takes units off the front of the text for as long as they pass the test; answers them as ASCII.
template <class Test>
std::string take(std::u16string_view& text, Test test) {
  const auto length =
      static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), test) - text.begin());
  std::string taken(length, '\0');
  std::transform(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(length), taken.begin(),
                 [](char16_t unit) { return static_cast<char>(unit); });
  text.remove_prefix(length);
  return taken;
}

constexpr bool isOneOf(std::u16string_view units, char16_t unit) {
  return units.find(unit) != std::u16string_view::npos;
}

std::string takeSign(std::u16string_view& text) {
  if (text.empty() || !isSign(text.front())) return {};
  const char sign = static_cast<char>(text.front());
  text.remove_prefix(1);
  return {sign};
}

// The ASCII that the text begins with, as far as a number may go.
std::string asciiBeginning(std::u16string_view text) {
  return take(text, [](char16_t unit) {
    return isBlank(unit) || isDigit(unit) || isSign(unit) || isOneOf(u".eE", unit);
  });
}

}  // namespace

long numericValue(std::u16string_view text) {
  take(text, isBlank);
  const std::string sign = takeSign(text);
  return std::strtol((sign + take(text, isAlphanumericASCII)).c_str(), nullptr, 0);
}

bool booleanValue(std::u16string_view text) {
  constexpr std::u16string_view kTrue = u"TtYy1";
  if (!text.empty() && isOneOf(kTrue, text.front())) return true;
  return leadingInteger(asciiBeginning(text)) != 0;
}

bool isIntegerNumber(std::u16string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

std::u16string withDecimalPoint(std::u16string_view text) {
  std::u16string result(text);
  const std::size_t comma = text.find(u',');
  const std::size_t point = text.find(u'.');
  if (comma == std::u16string_view::npos) return result;
  if (point != std::u16string_view::npos && comma < point) {
    std::erase(result, u',');
    return result;
  }
  std::erase(result, u'.');
  std::replace(result.begin(), result.end(), u',', u'.');
  return result;
}

float smartFloatValue(std::u16string_view text) {
  const std::u16string number = withDecimalPoint(text);
  return static_cast<float>(
      leadingDecimal(asciiBeginning(std::u16string_view(number).substr(leadingWhitespace(number)))));
}

}  // namespace kr
