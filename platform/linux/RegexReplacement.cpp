#include "platform/RegexReplacement.h"

#include <unicode/uregex.h>

#include <limits>
#include <memory>

#include "platform/Format.h"
#include "platform/UTF8Bytes.h"

namespace kr::platform {
namespace {

using Regex = std::unique_ptr<URegularExpression, decltype(&::uregex_close)>;

constexpr std::size_t kLongest = std::numeric_limits<std::int32_t>::max();

RegexReplacement failure(UErrorCode error) {
  return {false, {}, ::u_errorName(error)};
}

Regex compiled(std::u16string_view pattern, RegexReplacement& result) {
  UErrorCode error = U_ZERO_ERROR;
  UParseError place{};
  Regex regex(
      ::uregex_open(pattern.data(), static_cast<std::int32_t>(pattern.size()), UREGEX_UWORD, &place, &error),
      &::uregex_close);
  if (U_SUCCESS(error)) return regex;
  result.error = formatted("the pattern \"%@\" is not valid: %@, line %d, character %d",
                           bytesFromUTF16(pattern), ::u_errorName(error), place.line, place.offset);
  return {nullptr, &::uregex_close};
}

// One run of text of a template: itself, or what a group has matched.
class Template {
 public:
  Template(std::u16string_view source, int groups) : source_(source), groups_(groups) {}

  // Appends what the template gives for the match that the expression has found in the text.
  void append(std::u16string& result, std::u16string_view text, URegularExpression* regex,
              UErrorCode& error) const {
    for (std::size_t at = 0; at < source_.size(); ++at) {
      const char16_t unit = source_[at];
      if (unit == u'\\' && at + 1 < source_.size()) {
        result += source_[++at];
      } else if (unit == u'$' && at + 1 < source_.size() && isDigit(source_[at + 1])) {
        const int group = groupAt(at);
        if (group > groups_) continue;
        const std::int32_t start = ::uregex_start(regex, group, &error);
        const std::int32_t end = ::uregex_end(regex, group, &error);
        // A group that took no part in the match has no place.
        if (start >= 0)
          result += text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start));
      } else {
        result += unit;
      }
    }
  }

 private:
  static bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

  // The number behind the "$" at the place, which moves on to its last digit.
  int groupAt(std::size_t& at) const {
    int group = source_[++at] - u'0';
    while (at + 1 < source_.size() && isDigit(source_[at + 1]) &&
           group * 10 + (source_[at + 1] - u'0') <= groups_) {
      group = group * 10 + (source_[++at] - u'0');
    }
    return group;
  }

  std::u16string_view source_;
  int groups_;
};

}  // namespace

RegexReplacement replaceMatches(std::u16string_view text, std::u16string_view pattern,
                                std::u16string_view replacement) {
  if (text.size() > kLongest || pattern.size() > kLongest) return failure(U_BUFFER_OVERFLOW_ERROR);
  RegexReplacement result;
  const Regex regex = compiled(pattern, result);
  if (!regex) return result;

  UErrorCode error = U_ZERO_ERROR;
  ::uregex_setText(regex.get(), text.data(), static_cast<std::int32_t>(text.size()), &error);
  const Template filling(replacement, ::uregex_groupCount(regex.get(), &error));
  std::size_t taken = 0;
  while (::uregex_findNext(regex.get(), &error) != 0) {
    const auto start = static_cast<std::size_t>(::uregex_start(regex.get(), 0, &error));
    result.text += text.substr(taken, start - taken);
    filling.append(result.text, text, regex.get(), error);
    taken = static_cast<std::size_t>(::uregex_end(regex.get(), 0, &error));
  }
  if (U_FAILURE(error)) return failure(error);
  result.text += text.substr(taken);
  result.done = true;
  return result;
}

}  // namespace kr::platform
