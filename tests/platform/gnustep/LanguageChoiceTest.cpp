#include "platform/gnustep/LanguageChoice.h"

#include <gtest/gtest.h>

namespace kr {
namespace {

using Languages = std::vector<std::string>;

const Languages kAvailable{"ar", "de", "en", "fr", "pt-BR", "zh-Hans"};

// The language that is shown for one wanted one.
std::string chosen(const std::string& wanted) {
  return chooseLanguages({wanted}, kAvailable).front();
}

TEST(LanguageChoice, TakesNamesOfLocalesOfLanguagesAndOfTheToolkit) {
  for (const char* name : {"de", "de_DE", "de_DE.UTF-8", "de_AT.utf8@euro", "de-CH", "DE", "German"}) {
    EXPECT_EQ(chosen(name), "de") << name;
  }
  for (const char* name : {"C", "POSIX", "C.UTF-8", "en_GB", "English", "tlh", "d", "deu", ""}) {
    EXPECT_EQ(chosen(name), "en") << name;
  }
}

TEST(LanguageChoice, ServesARegionWithAnotherOneOfItsLanguage) {
  for (const char* name : {"pt_BR", "pt-BR", "pt", "pt_PT.UTF-8", "BrasilPortuguese", "Portuguese"}) {
    EXPECT_EQ(chosen(name), "pt-BR") << name;
  }
}

TEST(LanguageChoice, TellsTheScriptsOfChineseApart) {
  for (const char* name : {"zh_CN.UTF-8", "zh", "zh-Hans", "zh_Hans_SG", "zh-SG", "SimplifiedChinese"}) {
    EXPECT_EQ(chosen(name), "zh-Hans") << name;
  }
  for (const char* name : {"zh_TW", "zh-HK", "zh-Hant", "zh-Hant-TW"}) EXPECT_EQ(chosen(name), "en") << name;
}

TEST(LanguageChoice, KeepsTheOrderAndEndsWithEnglish) {
  EXPECT_EQ(chooseLanguages({"fr_FR", "xx", "de", "fr"}, kAvailable), (Languages{"fr", "de", "en"}));
  EXPECT_EQ(chooseLanguages({"en", "de"}, kAvailable), (Languages{"en", "de"}));
  EXPECT_EQ(chooseLanguages({}, kAvailable), Languages{"en"});
  EXPECT_EQ(chooseLanguages({"de"}, {}), Languages{});
}

TEST(LanguageChoice, ReadsTheEnvironment) {
  EXPECT_EQ(languagesOfEnvironment("de:fr::", {"it", "", "es"}), (Languages{"de", "fr"}));
  EXPECT_EQ(languagesOfEnvironment("", {"", "it_IT.UTF-8", "es"}), Languages{"it_IT.UTF-8"});
  EXPECT_EQ(languagesOfEnvironment(":", {"", "", "es"}), Languages{"es"});
  EXPECT_EQ(languagesOfEnvironment("", {"", "", ""}), Languages{});
}

}  // namespace
}  // namespace kr
