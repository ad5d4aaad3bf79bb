#include <unicode/uregex.h>
#include <unicode/ustring.h>

#include "benchmarks/text/Cases.h"
#include "benchmarks/text/Comparison.h"
#include "library/text/CodePoints.h"
#import "library/text/StringExtensions.h"
#import "platform/cocoa/Bridging.h"

namespace kr::bench {

std::u16string words(std::u16string_view other, int everyWords, std::size_t length) {
  constexpr std::u16string_view kWords[] = {u"the",  u"quick", u"brown", u"fox", u"jumps",
                                            u"over", u"a",     u"lazy",  u"dog"};
  std::u16string text;
  for (int count = 1; text.size() < length; ++count) {
    text += kWords[static_cast<std::size_t>(count * 7) % std::size(kWords)];
    text += count % everyWords == 0 ? other : u" ";
  }
  return text;
}

namespace {

void compareTrimming(std::string_view name, const std::u16string& text) {
  NSString* string = toNSString(text);
  NSCharacterSet* set = [NSCharacterSet whitespaceAndNewlineCharacterSet];
  require([[string stringByTrimmingWhitespace] isEqual:[string stringByTrimmingCharactersInSet:set]], name);
  compare(name, {{"ours", [=] { [string stringByTrimmingWhitespace]; }},
                 {"foundation", [=] { [string stringByTrimmingCharactersInSet:set]; }}});
}

void compareReplacing(std::string_view name, const std::u16string& text) {
  NSString* string = toNSString(text);
  require([[string withLineSeparator:@"\n"] isEqual:[string stringByReplacingOccurrencesOfString:@"\r\n"
                                                                                      withString:@"\n"]],
          name);
  compare(
      name,
      {{"ours", [=] { [string withLineSeparator:@"\n"]; }},
       {"foundation", [=] { [string stringByReplacingOccurrencesOfString:@"\r\n" withString:@"\n"]; }},
       {"joined", [=] { [[string componentsSeparatedByString:@"\r\n"] componentsJoinedByString:@"\n"]; }}});
}

void compareSplitting(std::string_view name, const std::u16string& text) {
  NSString* string = toNSString(text);
  require([[string arrayOfLines] isEqual:[string componentsSeparatedByString:@"\n"]], name);
  compare(name, {{"ours", [=] { [string arrayOfLines]; }},
                 {"foundation", [=] { [string componentsSeparatedByString:@"\n"]; }}});
}

void compareCounting(std::string_view name, const std::u16string& text) {
  const auto length = static_cast<std::int32_t>(text.size());
  std::size_t count = 0;
  compare(name, {{"ours", [&] { count += numberOfCodePoints(text); }},
                 {"icu", [&] { count += static_cast<std::size_t>(::u_countChar32(text.data(), length)); }}});
  require(
      count > 0 && numberOfCodePoints(text) == static_cast<std::size_t>(::u_countChar32(text.data(), length)),
      name);
}

}  // namespace

void compareLines() {
  const std::u16string spaces(40, u' ');
  compareTrimming("trim.short", u" the quick brown fox ");
  compareTrimming("trim.long", spaces + words(u"\n", 10) + spaces);
  compareTrimming("trim.unchanged", words(u"é ", 10) + u".");
  compareReplacing("lines.replace", words(u"\r\n", 10));
  compareReplacing("lines.replace.unicode", words(u"—\r\n", 10));
  compareSplitting("lines.split", words(u"\n", 10));
  compareSplitting("lines.split.unicode", words(u"—\n", 10));
  compareCounting("count.ascii", words(u"\n", 10));
  compareCounting("count.emoji", words(u"😀", 2));
}

}  // namespace kr::bench
