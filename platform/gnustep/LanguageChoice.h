// Which of the languages that an application has suit its user.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kr {

// Of the languages that there are ("de", "pt-BR", "zh-Hans": names of folders of strings), those that suit
// the wanted ones, best first and each once; English comes last wherever it was not wanted. Wanted are names
// in any of the usual forms: of locales ("de_AT.UTF-8", "C"), of languages ("de-AT"), or the toolkit's
// ("German"). A wanted regional form is served by another one of the same language, but traditional Chinese
// is not by the simplified.
[[nodiscard]] std::vector<std::string> chooseLanguages(const std::vector<std::string>& wanted,
                                                       const std::vector<std::string>& available);

// The languages that the environment asks for: the list in `language` (LANGUAGE), else the first of the
// others (LC_ALL, LC_MESSAGES, LANG) that is not empty. A variable that is not set is empty here.
[[nodiscard]] std::vector<std::string> languagesOfEnvironment(std::string_view language,
                                                              const std::vector<std::string>& locales);

}  // namespace kr
