#include <libxml/HTMLparser.h>
#include <unicode/uregex.h>

#include "benchmarks/text/Cases.h"
#include "benchmarks/text/Comparison.h"
#import "library/text/StringExtensions.h"
#include "platform/UTF8Bytes.h"
#import "platform/cocoa/Bridging.h"

namespace kr::bench {
namespace {

// Deprecated on macOS, where nobody runs this.
void comparePercentEscapes(std::string_view name, const std::u16string& text) {
  const std::string base(name);
  NSString* string = toNSString(text);
  NSString* escaped = [string stringByAddingPercentEscapesUsingEncoding:NSUTF8StringEncoding];
  require([[string stringWithPercentEscapes] isEqual:escaped], name);
  // Of the three steps that make up ours only the second: on GNUstep the first one gives nil for other
  // characters than ASCII.
  compare(base + ".add", {{"ours", [=] { [string stringWithPercentEscapes]; }},
                          {"foundation.addOnly", [=] {
                             [string stringByAddingPercentEscapesUsingEncoding:NSUTF8StringEncoding];
                           }}});
  require([[escaped stringWithExpandedPercentEscapes] isEqual:string], name);
  compare(
      base + ".expand",
      {{"ours", [=] { [escaped stringWithExpandedPercentEscapes]; }},
       {"foundation", [=] { [escaped stringByReplacingPercentEscapesUsingEncoding:NSUTF8StringEncoding]; }}});
}

void compareBackslashes() {
  NSString* string = toNSString(words(u"\\n", 10));
  NSString* expanded = [string stringByReplacingOccurrencesOfString:@"\\n" withString:@"\n"];
  require([[string stringByExpandingEscapedControlCharacters] isEqual:expanded], "backslashes");
  compare(
      "backslashes.expand",
      {{"ours", [=] { [string stringByExpandingEscapedControlCharacters]; }},
       {"joined", [=] { [[string componentsSeparatedByString:@"\\n"] componentsJoinedByString:@"\n"]; }}});
}

void compareHTML() {
  const std::u16string html = words(u" &amp; <b>x</b>&eacute; ", 10);
  const std::string bytes = platform::bytesFromUTF16(html);
  NSString* string = toNSString(html);
  compare("html.text", {{"ours", [=] { [string stringByExpandingHTMLEntities]; }},
                        {"libxml2", [&] {
                           htmlDocPtr document = ::htmlReadMemory(
                               bytes.data(), static_cast<int>(bytes.size()), nullptr, "UTF-8",
                               HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING | HTML_PARSE_NONET);
                           xmlChar* text = ::xmlNodeGetContent(::xmlDocGetRootElement(document));
                           (void)toNSString(std::string_view(reinterpret_cast<const char*>(text)));
                           ::xmlFree(text);
                           ::xmlFreeDoc(document);
                         }}});
}

void compareRegex() {
  const std::u16string text = words(u"\n", 10);
  NSString* string = toNSString(text);
  NSRegularExpression* regex = [NSRegularExpression regularExpressionWithPattern:@"(\\w+) fox"
                                                                         options:0
                                                                           error:nullptr];
  NSString* replaced = [regex stringByReplacingMatchesInString:string
                                                       options:0
                                                         range:NSMakeRange(0, [string length])
                                                  withTemplate:@"fox $1"];
  require([[string stringByReplacingOccurrencesOfRegexPattern:@"(\\w+) fox"
                                                 withTemplate:@"fox $1"] isEqual:replaced],
          "regex");
  compare(
      "regex.replace",
      {{"ours",
        [=] { [string stringByReplacingOccurrencesOfRegexPattern:@"(\\w+) fox" withTemplate:@"fox $1"]; }},
       {"foundation",
        [=] {
          [regex stringByReplacingMatchesInString:string
                                          options:0
                                            range:NSMakeRange(0, [string length])
                                     withTemplate:@"fox $1"];
        }},
       {"icu", [&] {
          UErrorCode error = U_ZERO_ERROR;
          URegularExpression* icu = ::uregex_open(u"(\\w+) fox", -1, 0, nullptr, &error);
          ::uregex_setText(icu, text.data(), static_cast<std::int32_t>(text.size()), &error);
          std::u16string result(text.size() * 2, u'\0');
          ::uregex_replaceAll(icu, u"fox $1", -1, result.data(), static_cast<std::int32_t>(result.size()),
                              &error);
          ::uregex_close(icu);
        }}});
}

}  // namespace

void compareEscapes() {
  comparePercentEscapes("percent.short", u"http://velmora.example/notes and more");
  comparePercentEscapes("percent.ascii", words(u"\n", 10));
  comparePercentEscapes("percent.unicode", words(u"é", 2));
  compareBackslashes();
  compareHTML();
  compareRegex();
}

}  // namespace kr::bench
