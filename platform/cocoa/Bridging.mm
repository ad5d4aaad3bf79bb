#import "platform/cocoa/Bridging.h"

#include "platform/UTF8Bytes.h"

namespace kr {

NSString* toNSString(std::u16string_view units) {
  NSString* string = [NSString stringWithCharacters:reinterpret_cast<const unichar*>(units.data())
                                             length:units.size()];
  if (string != nil) return string;
  // Some constructors refuse lone surrogates; putting them into a string that is there already works.
  const std::u16string valid = platform::withoutLoneSurrogates(units);
  NSMutableString* built =
      [NSMutableString stringWithCharacters:reinterpret_cast<const unichar*>(valid.data())
                                     length:valid.size()];
  for (std::size_t index = 0; index < units.size(); ++index) {
    if (units[index] == valid[index]) continue;
    NSString* surrogate = [[NSString alloc] initWithFormat:@"%C", static_cast<unichar>(units[index])];
    [built replaceCharactersInRange:NSMakeRange(index, 1) withString:surrogate];
    [surrogate release];
  }
  return [NSString stringWithString:built];
}

NSMutableString* toNSMutableString(std::u16string_view units) {
  NSMutableString* string = [NSMutableString stringWithCapacity:units.size()];
  // A mutable copy has no lone surrogates everywhere.
  [string setString:toNSString(units)];
  return string;
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

// NOLINTNEXTLINE: the units are written before anybody reads them
UTF16Text::UTF16Text(NSString* string, NSRange range) : length_(string == nil ? 0 : range.length) {
  if (length_ > few_.size()) many_.reset(new char16_t[length_]);
  units_ = many_ ? many_.get() : few_.data();
  if (length_ > 0) [string getCharacters:reinterpret_cast<unichar*>(units_) range:range];
}

void forEachPart(NSString* string, const std::function<void(std::u16string_view)>& call) {
  constexpr NSUInteger kPart = 4096;
  std::array<char16_t, kPart> units;  // NOLINT: written before it is read
  const NSUInteger length = [string length];
  for (NSUInteger start = 0; start < length;) {
    NSUInteger count = MIN(kPart, length - start);
    [string getCharacters:reinterpret_cast<unichar*>(units.data()) range:NSMakeRange(start, count)];
    const bool endsInHighSurrogate = (units[count - 1] & 0xFC00) == 0xD800;
    if (endsInHighSurrogate && start + count < length && count > 1) --count;
    call({units.data(), count});
    start += count;
  }
}

std::string toBytes(NSString* string) {
  return platform::bytesFromUTF16(UTF16Text(string));
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
