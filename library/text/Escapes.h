// Backslash escapes. Every function answers none when there is nothing to change. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kr {

// What is escaped where no other characters are named: line feed, carriage return, tab and backslash.
inline constexpr std::u16string_view kEscapeCharacters = u"\n\r\t\\";

// The text with the characters escaped. A tab, carriage return or line feed becomes a backslash and t, r or
// n; any other character gets a backslash before it.
//
// Two texts take part. The edits, and the look at which character is to be escaped, are made in a copy; every
// search is made in the text as it was given, from two places after the position just handled, and the
// position that it finds is used in the copy as it is. From the second occurrence on the copy is longer than
// the text, so the character that is escaped stands before the one that was found: "a,b,c" with "," becomes
// "a\,\b,c". And of two occurrences side by side the second is passed over. Callers rely on these results.
[[nodiscard]] std::optional<std::u16string> escaped(std::u16string_view text, std::u16string_view characters);

// The text with the escapes expanded that produce one of the characters: a tab, carriage return or line feed
// among them stands for a backslash and t, r or n; any other one for a backslash and that character.
[[nodiscard]] std::optional<std::u16string> withEscapesExpanded(std::u16string_view text,
                                                                std::u16string_view characters);

// The text with a backslash and n, r or t expanded to a line feed, carriage return or tab. Two backslashes
// become one where `includingBackslash` says so; else they stay, and what follows them is no escape. A
// backslash before anything else stays.
[[nodiscard]] std::optional<std::u16string> withControlEscapesExpanded(std::u16string_view text,
                                                                       bool includingBackslash);

// The text that a string literal of Objective-C source code stands for, from its at-sign to its last quote.
// Empty for less than three units. The escapes are replaced one kind after the other, two backslashes first,
// so the backslash that these leave can begin an escape of a later kind: that is meant.
[[nodiscard]] std::u16string textOfObjCLiteral(std::u16string_view literal);

}  // namespace kr
