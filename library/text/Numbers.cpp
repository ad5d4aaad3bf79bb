#include "library/text/Numbers.h"

#include <algorithm>
#include <cstdlib>
#include <locale>
#include <sstream>

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

std::string takeSign(std::u16string_view& text) {
  if (text.empty() || !isSign(text.front())) return {};
  const char sign = static_cast<char>(text.front());
  text.remove_prefix(1);
  return {sign};
}

// The decimal number that the text begins with, as ASCII; empty without one.
std::string decimalNumber(std::u16string_view text) {
  text.remove_prefix(leadingWhitespace(text));
  std::string number = takeSign(text);
  const std::string whole = take(text, isDigit);
  std::string fraction;
  if (text.starts_with(u'.')) {
    text.remove_prefix(1);
    fraction = take(text, isDigit);
  }
  if (whole.empty() && fraction.empty()) return {};
  number += whole + "." + fraction;
  if (text.starts_with(u'e') || text.starts_with(u'E')) {
    text.remove_prefix(1);
    const std::string sign = takeSign(text);
    const std::string exponent = take(text, isDigit);
    if (!exponent.empty()) number += "e" + sign + exponent;
  }
  return number;
}

}  // namespace

long numericValue(std::u16string_view text) {
  take(text, isBlank);
  const std::string sign = takeSign(text);
  return std::strtol((sign + take(text, isAlphanumericASCII)).c_str(), nullptr, 0);
}

bool booleanValue(std::u16string_view text) {
  constexpr std::u16string_view kTrue = u"TtYy1";
  if (!text.empty() && kTrue.find(text.front()) != std::u16string_view::npos) return true;
  take(text, isBlank);
  takeSign(text);
  return take(text, isDigit).find_first_not_of('0') != std::string::npos;
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
  // A stream reads in its own locale, where the C library's functions read in that of the program.
  std::istringstream stream(decimalNumber(withDecimalPoint(text)));
  stream.imbue(std::locale::classic());
  double value = 0;
  stream >> value;
  return static_cast<float>(value);
}

}  // namespace kr
