// The languages of the application's texts. Main thread.
#pragma once

#include <string>

namespace kr::platform {

// Has bundles look for texts in the languages that the user prefers, of those that the application has. The
// user asks with "-AppleLanguages" or "-NSLanguages" on the command line, the user default "NSLanguages", or
// the locale. Before texts are looked up.
void useUserLanguages();

// The one that texts come in: the name of a folder of strings, "en" before useUserLanguages().
[[nodiscard]] const std::string& interfaceLanguage();

// Whether it is written from the right to the left.
[[nodiscard]] bool interfaceIsRightToLeft();

}  // namespace kr::platform
