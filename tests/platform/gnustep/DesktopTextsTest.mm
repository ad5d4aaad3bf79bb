// The texts that the desktop shows for the application: in every language that its own texts are in.
#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "platform/posix/Files.h"

namespace kr {
namespace {

using Texts = std::map<std::string, std::string>;

// By the names that the desktop has for languages. The pattern's first part is the language, none for
// English.
Texts texts(const char* path, const char* pattern) {
  const std::string file = files::contents(path, 1UL << 20).value_or("");
  const std::regex expression(pattern, std::regex::multiline);
  Texts found;
  for (std::sregex_iterator it(file.begin(), file.end(), expression), end; it != end; ++it) {
    EXPECT_TRUE(found.try_emplace((*it)[1].str(), (*it)[2].str()).second) << (*it)[1].str() << " twice";
  }
  return found;
}

// The application's languages, as the desktop writes them: language and country, where the country matters.
std::vector<std::string> languages(const char* portuguese) {
  std::vector<std::string> found;
  for (const std::string& name :
       files::entries(KR_INSTALLER_BUNDLE "/Resources").value_or(std::vector<std::string>{})) {
    if (!name.ends_with(".lproj")) continue;
    const std::string language = name.substr(0, name.size() - 6);
    if (language == "en") {
      found.emplace_back();
    } else if (language == "pt-BR") {
      found.emplace_back(portuguese);
    } else {
      found.push_back(language == "zh-Hans" ? "zh_CN" : language);
    }
  }
  return found;
}

void expectTranslated(const Texts& texts, const std::vector<std::string>& languages) {
  EXPECT_GE(languages.size(), 14U);
  ASSERT_TRUE(texts.contains(""));
  for (const std::string& language : languages) {
    ASSERT_TRUE(texts.contains(language)) << language;
    EXPECT_FALSE(texts.at(language).empty()) << language;
    if (!language.empty()) EXPECT_NE(texts.at(language), texts.at("")) << language;
  }
}

TEST(DesktopTexts, TheQuestionForThePasswordIsInEveryLanguage) {
  const Texts found = texts(KR_POLICY, "<message(?: xml:lang=\"([^\"]+)\")?>([^<]*)</message>");
  expectTranslated(found, languages("pt"));
  // An older polkit looks for the whole locale and for the language alone.
  ASSERT_TRUE(found.contains("zh_CN.UTF-8"));
  EXPECT_EQ(found.at("zh_CN.UTF-8"), found.at("zh_CN"));
}

TEST(DesktopTexts, TheEntryOfMenusIsInEveryLanguage) {
  for (const char* key : {"GenericName", "Comment"}) {
    const std::string pattern = std::string("^") + key + "(?:\\[([^\\]]+)\\])?=(.*)$";
    expectTranslated(texts(KR_DESKTOP_ENTRY, pattern.c_str()), languages("pt_BR"));
  }
}

}  // namespace
}  // namespace kr
