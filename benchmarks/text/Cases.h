// The cases of text_bench, by what they are about.
#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

namespace kr::bench {

void compareLines();      // white space, lines, code points
void compareValues();     // order, wildcards, digests
void compareEscapes();    // percent escapes, backslashes, HTML, regular expressions
void compareEncodings();  // bytes as text

// About a million units of words, with every so many words one of `other` in place of a space.
[[nodiscard]] std::u16string words(std::u16string_view other, int everyWords, std::size_t length = 1 << 20);

}  // namespace kr::bench
