// Texts as lines and as pieces. The pieces are parts of the text that was given. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kr {

// The pieces between the separators, of which one text decides: "\r\n" where the text holds one, else "\n"
// where it holds one, else "\r". Empty pieces, also the one after a last separator, are among them.
[[nodiscard]] std::vector<std::u16string_view> lines(std::u16string_view text);

// The pieces between the separators, empty ones included, but none after a final separator; so an empty text
// has none at all.
[[nodiscard]] std::vector<std::u16string_view> pieces(std::u16string_view text, char16_t separator);

// The text with its line breaks replaced by the separator; none when nothing was replaced. Three searches,
// one after the other, each over the whole text as it then is: for "\r\n", for "\r" and for "\n", of which
// the one that equals the separator is left out. What an earlier search has put in is therefore found by a
// later one: with "\r\n" as the separator, a "\r\n" of the text becomes "\r\r\n\r\n". That is meant.
[[nodiscard]] std::optional<std::u16string> withLineSeparator(std::u16string_view text,
                                                              std::u16string_view separator);

// The text `count` times; empty for counts below 1, and where that would be longer than any text can be.
[[nodiscard]] std::u16string repeated(std::u16string_view text, long count);

}  // namespace kr
