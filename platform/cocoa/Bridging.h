// Between Cocoa's strings and the texts of the C++ core. Nothing else converts. Any thread.
//
// File-system paths and command-line words are bytes, and not every sequence of bytes is UTF-8. A byte that
// is not part of valid UTF-8 becomes a lone surrogate (U+DC80 + byte - 0x80) in the NSString and the same
// byte again on the way back, so a path survives the round trip whatever it holds.
#pragma once

#import <Foundation/Foundation.h>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kr {

// Never nil. The result is autoreleased.
[[nodiscard]] NSString* toNSString(std::string_view bytes);
[[nodiscard]] NSString* toNSString(std::u16string_view units);
[[nodiscard]] inline NSString* toNSString(const std::string& bytes) {
  return toNSString(std::string_view(bytes));
}

// A string of its own, that may be changed.
[[nodiscard]] NSMutableString* toNSMutableString(std::u16string_view units);

// nil for no text.
[[nodiscard]] NSString* toNSString(const std::optional<std::string>& bytes);

// The empty text for nil.
[[nodiscard]] std::string toBytes(NSString* string);
[[nodiscard]] std::u16string toUTF16(NSString* string);

// The units of a string, or of a range within it, to look at: a short text takes no memory from the heap, a
// long one is copied once. nil has no units. The range must lie within the string.
class UTF16Text {
 public:
  explicit UTF16Text(NSString* string) : UTF16Text(string, NSMakeRange(0, [string length])) {}
  UTF16Text(NSString* string, NSRange range);
  UTF16Text(const UTF16Text&) = delete;
  UTF16Text& operator=(const UTF16Text&) = delete;

  // Valid for as long as this object is.
  [[nodiscard]] std::u16string_view view() const { return {units_, length_}; }
  operator std::u16string_view() const { return view(); }  // NOLINT: it is one

 private:
  std::array<char16_t, 128> few_;
  std::unique_ptr<char16_t[]> many_;
  char16_t* units_;
  std::size_t length_;
};

// Calls with the units in parts, for long texts of which nobody needs a copy. A pair of surrogates is within
// one part.
void forEachPart(NSString* string, const std::function<void(std::u16string_view)>& call);

// No text for nil.
[[nodiscard]] std::optional<std::string> toOptionalBytes(NSString* string);

// The text as it can be shown to people and handed to Cocoa's file calls, which raise on lone surrogates:
// each of them is replaced by U+FFFD. nil for nil.
[[nodiscard]] NSString* toDisplayText(NSString* string);

// Strings only; an entry of another class is left out. nil gives an empty list.
[[nodiscard]] std::vector<std::string> toByteStrings(NSArray* strings);
[[nodiscard]] NSMutableArray* toNSArray(const std::vector<std::string>& strings);

}  // namespace kr
