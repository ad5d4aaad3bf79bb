#include "library/text/LeadingNumbers.h"

#include <algorithm>
#include <limits>
#include <locale>
#include <sstream>
#include <string>

namespace kr {
namespace {

constexpr std::string_view kBlanks = " \t\n\v\f\r";
constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kSigns = "+-";

// Takes the characters that the text begins with, as many as are among the given ones, off its front.
std::string_view take(std::string_view& text, std::string_view characters,
                      std::size_t most = std::string_view::npos) {
  const std::string_view taken = text.substr(0, std::min(text.find_first_not_of(characters), most));
  text.remove_prefix(taken.size());
  return taken;
}

}  // namespace

int leadingInteger(std::string_view text) {
  take(text, kBlanks);
  const bool isNegative = take(text, kSigns, 1) == "-";
  constexpr long long kLimit = std::numeric_limits<int>::max();
  long long value = 0;
  for (const char digit : take(text, kDigits)) {
    if (value <= kLimit) value = value * 10 + (digit - '0');
  }
  if (isNegative) return static_cast<int>(value > kLimit ? -kLimit - 1 : -value);
  return static_cast<int>(std::min(value, kLimit));
}

double leadingDecimal(std::string_view text) {
  take(text, kBlanks);
  std::string number(take(text, kSigns, 1));
  const std::string_view whole = take(text, kDigits);
  const bool hasPoint = !take(text, ".", 1).empty();
  const std::string_view fraction = hasPoint ? take(text, kDigits) : std::string_view();
  if (whole.empty() && fraction.empty()) return 0;
  number.append(whole).append(".").append(fraction);
  if (!take(text, "eE", 1).empty()) {
    const std::string_view sign = take(text, kSigns, 1);
    const std::string_view exponent = take(text, kDigits);
    if (!exponent.empty()) number.append("e").append(sign).append(exponent);
  }
  // A stream reads in its own locale, where the C library's functions read in that of the program.
  std::istringstream stream(number);
  stream.imbue(std::locale::classic());
  double value = 0;
  stream >> value;
  return value;
}

}  // namespace kr
