#include <cstring>

#include "library/text/ByteOrderMark.h"
#include "library/text/Decoding.h"
#include "library/text/HTMLEncoding.h"
#include "library/text/Plausibility.h"
#import "library/text/StringExtensions.h"
#include "library/text/TextFile.h"
#import "platform/cocoa/Bridging.h"
#include "platform/posix/Files.h"

namespace {

NSStringEncoding encodingOf(kr::UnicodeForm form) {
  switch (form) {
    case kr::UnicodeForm::utf8:
      return NSUTF8StringEncoding;
    case kr::UnicodeForm::utf16BigEndian:
      return NSUTF16BigEndianStringEncoding;
    case kr::UnicodeForm::utf16LittleEndian:
      return NSUTF16LittleEndianStringEncoding;
    case kr::UnicodeForm::utf32BigEndian:
      return NSUTF32BigEndianStringEncoding;
    case kr::UnicodeForm::utf32LittleEndian:
      return NSUTF32LittleEndianStringEncoding;
  }
}

std::string_view bytesOf(NSData* data) {
  return {static_cast<const char*>([data bytes]), [data length]};
}

std::u16string decodedMacRoman(const char* bytes, NSUInteger length) {
  return bytes != nullptr ? kr::decodedMacRoman({bytes, length}) : std::u16string();
}

NSUInteger lengthOf(const char* bytes) {
  return bytes != nullptr ? std::strlen(bytes) : 0;
}

}  // namespace

@implementation NSString (StringExtensionsEncodings)

+ (id)stringWithMacRomanCString:(const char*)bytes {
  return [self stringWithMacRomanCString:bytes length:lengthOf(bytes)];
}

+ (id)stringWithMacRomanCString:(const char*)bytes length:(NSUInteger)length {
  return kr::toNSString(decodedMacRoman(bytes, length));
}

+ (NSStringEncoding)explicitEncodingOfFile:(NSString*)path defaultEncoding:(NSStringEncoding)defaultEncoding {
  constexpr std::size_t kLongestMark = 4;
  const std::optional<std::string> start = kr::files::firstBytes(kr::toBytes(path), kLongestMark);
  const auto mark = start ? kr::byteOrderMark(*start) : std::nullopt;
  return mark ? encodingOf(mark->form) : defaultEncoding;
}

+ (NSString*)stringWithBestEncodingFromFile:(NSString*)path {
  const auto text = kr::textOfFile(kr::toBytes(path));
  return text ? kr::toNSString(std::u16string_view(*text)) : nil;
}

- (float)reasonableTextFactor:(NSString*)encodingName {
  return kr::plausibility(kr::UTF16Text(self, NSMakeRange(0, MIN([self length], 1000))));
}

+ (NSString*)stringWithHTML:(NSData*)data {
  return kr::toNSString(std::u16string_view(kr::decodedHTML(bytesOf(data))));
}

- (BOOL)appendToFile:(NSString*)path encoding:(NSStringEncoding)encoding {
  const std::string file = kr::toBytes(path);
  // The file is there also where the text cannot be encoded.
  if (!kr::files::append(file, {})) return NO;
  NSData* data = nil;
  @try {
    data = [self dataUsingEncoding:encoding];
  } @catch (NSException* exception) {
    return NO;
  }
  return data != nil && kr::files::append(file, bytesOf(data));
}

@end

@implementation NSMutableString (StringExtensionsEncodings)

+ (id)stringWithMacRomanCString:(const char*)bytes length:(NSUInteger)length {
  return kr::toNSMutableString(decodedMacRoman(bytes, length));
}

@end
