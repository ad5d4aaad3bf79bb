#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include "benchmarks/text/Cases.h"
#include "benchmarks/text/Comparison.h"
#include "library/text/Decoding.h"
#import "library/text/StringExtensions.h"
#include "platform/UTF8Bytes.h"
#import "platform/cocoa/Bridging.h"

namespace kr::bench {
namespace {

std::u16string withConverter(const char* name, const std::string& bytes) {
  UErrorCode error = U_ZERO_ERROR;
  UConverter* converter = ::ucnv_open(name, &error);
  std::u16string text(bytes.size() + 16, u'\0');
  text.resize(static_cast<std::size_t>(::ucnv_toUChars(converter, text.data(),
                                                       static_cast<std::int32_t>(text.size()), bytes.data(),
                                                       static_cast<std::int32_t>(bytes.size()), &error)));
  ::ucnv_close(converter);
  return text;
}

void compareUTF8(std::string_view name, const std::u16string& text) {
  const std::string base(name);
  const std::string bytes = platform::bytesFromUTF16(text);
  require(platform::utf16FromUTF8(bytes) == text, name);
  std::u16string units(bytes.size(), u'\0');
  std::string room(text.size() * 3, '\0');
  compare(base + ".decode", {{"ours", [&] { (void)platform::utf16FromUTF8(bytes); }},
                             {"icu", [&] {
                                UErrorCode error = U_ZERO_ERROR;
                                std::int32_t length = 0;
                                std::u16string result(bytes.size(), u'\0');
                                ::u_strFromUTF8(result.data(), static_cast<std::int32_t>(result.size()),
                                                &length, bytes.data(),
                                                static_cast<std::int32_t>(bytes.size()), &error);
                              }}});
  compare(base + ".encode", {{"ours", [&] { (void)platform::bytesFromUTF16(text); }},
                             {"icu", [&] {
                                UErrorCode error = U_ZERO_ERROR;
                                std::int32_t length = 0;
                                std::string result(text.size() * 3, '\0');
                                ::u_strToUTF8(result.data(), static_cast<std::int32_t>(result.size()),
                                              &length, text.data(), static_cast<std::int32_t>(text.size()),
                                              &error);
                              }}});
}

}  // namespace

void compareEncodings() {
  compareUTF8("utf8.ascii", words(u"\n", 10));
  compareUTF8("utf8.latin", words(u"é", 2));
  compareUTF8("utf8.cjk", words(u"日本語日本語日本語", 1));

  std::string bytes;
  for (const char16_t unit : words(u"\n", 10)) bytes += static_cast<char>(unit);
  for (std::size_t at = 0; at < bytes.size(); at += 20) bytes[at] = '\x8E';
  require(decodedMacRoman(bytes) == withConverter("macintosh", bytes), "macroman");
  NSData* data = [NSData dataWithBytes:bytes.data() length:bytes.size()];
  compare("macroman",
          {{"ours", [&] { [NSString stringWithMacRomanCString:bytes.data() length:bytes.size()]; }},
           {"foundation",
            [=] { [[[NSString alloc] initWithData:data encoding:NSMacOSRomanStringEncoding] autorelease]; }},
           {"icu", [&] { (void)toNSString(withConverter("macintosh", bytes)); }}});
}

}  // namespace kr::bench
