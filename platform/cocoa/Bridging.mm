#import "platform/cocoa/Bridging.h"

#include "platform/UTF8Bytes.h"

namespace kr {

NSString* toNSString(std::u16string_view units) {
  NSString* string = [NSString stringWithCharacters:reinterpret_cast<const unichar*>(units.data())
                                             length:units.size()];
  if (string != nil) return string;
  // Some constructors refuse lone surrogates; formatting unit by unit does not.
  NSMutableString* built = [NSMutableString stringWithCapacity:units.size()];
  for (const char16_t unit : units) [built appendFormat:@"%C", static_cast<unichar>(unit)];
  return [NSString stringWithString:built];
}

NSString* toNSString(std::string_view bytes) {
  return toNSString(platform::utf16FromBytes(bytes));
}

NSString* toNSString(const std::optional<std::string>& bytes) {
  return bytes ? toNSString(std::string_view(*bytes)) : nil;
}

std::u16string toUTF16(NSString* string) {
  std::u16string units([string length], u'\0');
  if (!units.empty()) {
    [string getCharacters:reinterpret_cast<unichar*>(units.data()) range:NSMakeRange(0, units.size())];
  }
  return units;
}

std::string toBytes(NSString* string) {
  return platform::bytesFromUTF16(toUTF16(string));
}

std::optional<std::string> toOptionalBytes(NSString* string) {
  if (string == nil) return std::nullopt;
  return toBytes(string);
}

NSString* toDisplayText(NSString* string) {
  if (string == nil) return nil;
  const std::u16string units = toUTF16(string);
  std::u16string text = platform::withoutLoneSurrogates(units);
  return text == units ? string : toNSString(std::u16string_view(text));
}

std::vector<std::string> toByteStrings(NSArray* strings) {
  std::vector<std::string> result;
  result.reserve([strings count]);
  for (id entry in strings) {
    if ([entry isKindOfClass:[NSString class]]) result.push_back(toBytes(entry));
  }
  return result;
}

NSMutableArray* toNSArray(const std::vector<std::string>& strings) {
  NSMutableArray* result = [NSMutableArray arrayWithCapacity:strings.size()];
  for (const std::string& string : strings) [result addObject:toNSString(std::string_view(string))];
  return result;
}

}  // namespace kr
