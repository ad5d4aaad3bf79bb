// Regular expressions, from the system's own library. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace kr::platform {

struct RegexReplacement {
  bool done = false;    // false where the pattern is no regular expression, or the system gave up on the text
  std::u16string text;  // the whole text with its matches replaced; of no meaning where it is not done
  std::string error;    // why it is not done
};

// The text with every match of the pattern replaced. Word boundaries are those of Unicode. In the template
// "$" and a number stand for what that group has matched (0 is the whole match; as many digits count as name
// a group), a backslash takes the next character literally, and all else, also a "$" before anything else,
// stands for itself.
[[nodiscard]] RegexReplacement replaceMatches(std::u16string_view text, std::u16string_view pattern,
                                              std::u16string_view replacement);

}  // namespace kr::platform
