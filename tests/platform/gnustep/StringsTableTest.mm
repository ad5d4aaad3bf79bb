// The tables of texts: the same keys in every language, each with a text that takes the same values.
#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#import "platform/cocoa/Bridging.h"
#include "platform/posix/Files.h"

namespace kr {
namespace {

// The texts of the application.
constexpr std::array kTexts{
    "Continue",
    "Install",
    "Cancel",
    "Go Back",
    "OK",
    "If you wish to read the documentation first, click the \"?\" button.",
    "Quit",
    "Visit Archive",
    "%1$@ %2$@ cannot be installed on this computer because it requires Mac OS X %3$@ or newer.",
    "To check if an older version of %@ is available for your computer, please visit our software archive.",
    "%@ was successfully installed.",
    "%1$@ cannot be running during the installation.\rQuit %1$@, then click \"Install\" again.",
    "Could not delete existing copy.",
    "Installation failed.",
    "Authorized copying failed.",
    "Try installing %1$@ manually by copying it to the Applications folder.",
    "missing source path",
    "missing program name",
    "missing product signature",
};

using Table = std::map<std::string, std::string>;

std::string contents(const std::string& path) {
  return files::contents(path, 1UL << 20).value_or("");
}

class StringsTable : public ::testing::Test {
 protected:
  StringsTable() : pool_([[NSAutoreleasePool alloc] init]) {
    for (const std::string& name : files::entries(KR_INSTALLER_BUNDLE "/Resources").value_or(Names{})) {
      if (name.ends_with(".lproj")) tables_[name.substr(0, name.size() - 6)] = read(name);
    }
  }
  ~StringsTable() override { [pool_ release]; }

  using Names = std::vector<std::string>;

  static NSBundle* bundle() { return [NSBundle bundleWithPath:toNSString(std::string(KR_INSTALLER_BUNDLE))]; }

  static std::string path(const std::string& folder) {
    return KR_INSTALLER_BUNDLE "/Resources/" + folder + "/Localizable.strings";
  }

  static Table read(const std::string& folder) {
    NSDictionary* found = [toNSString(contents(path(folder))) propertyListFromStringsFileFormat];
    Table table;
    for (NSString* key in found) table[toBytes(key)] = toBytes([found objectForKey:key]);
    return table;
  }

  const Table& english() { return tables_.at("en"); }

  // The placeholders of a text, sorted: their order is the language's own.
  static Names placeholders(const std::string& text) {
    static const std::regex pattern("%[0-9$]*[^0-9$]?");
    Names found(std::sregex_token_iterator(text.begin(), text.end(), pattern), std::sregex_token_iterator());
    std::sort(found.begin(), found.end());
    return found;
  }

  static std::string interface() { return contents(KR_INSTALLER_BUNDLE "/Resources/MainMenu.xib"); }

  // All of the application's own code, with the texts that stand in several pieces joined.
  static std::string code() {
    std::string all;
    for (const auto& entry : std::filesystem::directory_iterator(KR_INSTALLER_SOURCES)) {
      if (entry.is_regular_file()) all += contents(entry.path().string());
    }
    return std::regex_replace(all, std::regex("\"\\s*@?\""), "");
  }

  // A text as it is written in code.
  static std::string quoted(std::string text) {
    text = std::regex_replace(text, std::regex("\""), "\\\"");
    return "@\"" + std::regex_replace(text, std::regex("\r"), "\\r") + "\"";
  }

  // The words of the user-interface file that a person can see.
  static std::set<std::string> interfaceWords() {
    std::set<std::string> words;
    const std::string text = interface();
    static const std::regex pattern(
        "<(menu|menuItem|window|textFieldCell|buttonCell)\\b[^>]*? title=\"([^\"]+)\"");
    for (std::sregex_iterator it(text.begin(), text.end(), pattern), end; it != end; ++it) {
      words.insert((*it)[2].str());
    }
    return words;
  }

  std::map<std::string, Table> tables_;

 private:
  NSAutoreleasePool* pool_;
};

// What the user-interface file has for these is replaced before anybody sees it.
const std::set<std::string> kReplaced{"/Applications", "Main Menu"};

TEST_F(StringsTable, IsThereInFourteenLanguages) {
  std::vector<std::string> languages;
  for (const auto& [language, table] : tables_) languages.push_back(language);
  EXPECT_EQ(languages, (std::vector<std::string>{"ar", "de", "en", "es", "fr", "it", "ja", "ko", "nl", "pl",
                                                 "pt-BR", "ru", "sv", "zh-Hans"}));
}

TEST_F(StringsTable, LoadsInTheBundleAndHoldsEveryTextThatTheApplicationShows) {
  [NSUserDefaults setUserLanguages:@[ @"en" ]];
  NSString* missing = @"(missing)";
  for (const char* text : kTexts) {
    NSString* found = [bundle() localizedStringForKey:toNSString(std::string(text)) value:missing table:nil];
    EXPECT_EQ(toBytes(found), text);
  }
}

TEST_F(StringsTable, HasTheEnglishTextItselfAsKey) {
  ASSERT_GE(english().size(), kTexts.size());
  for (const auto& [key, text] : english()) EXPECT_EQ(key, text);
}

TEST_F(StringsTable, HasTheSameKeysInEveryLanguageAndEachOnce) {
  for (const auto& [language, table] : tables_) {
    for (const auto& [key, text] : english())
      EXPECT_TRUE(table.contains(key)) << language << " lacks " << key;
    for (const auto& [key, text] : table) EXPECT_TRUE(english().contains(key)) << language << " has " << key;
    static const std::regex entry("^\"", std::regex::multiline);
    const std::string file = contents(path(language + ".lproj"));
    const auto entries = std::distance(std::sregex_iterator(file.begin(), file.end(), entry), {});
    EXPECT_EQ(static_cast<std::size_t>(entries), table.size()) << language << " has a key twice";
  }
}

TEST_F(StringsTable, TakesTheSameValuesInEveryLanguage) {
  for (const auto& [language, table] : tables_) {
    for (const auto& [key, text] : table) {
      EXPECT_EQ(placeholders(text), placeholders(key)) << language << ": " << text;
      EXPECT_EQ(std::count(text.begin(), text.end(), '\r'), std::count(key.begin(), key.end(), '\r'))
          << language << ": " << text;
    }
  }
}

TEST_F(StringsTable, IsTranslated) {
  // Words that are the same in some languages.
  const std::set<std::string> international{"OK", "Velmora Installer", "File"};
  for (const auto& [language, table] : tables_) {
    if (language == "en") continue;
    for (const auto& [key, text] : table) {
      EXPECT_FALSE(text.empty()) << language << ": " << key;
      if (!international.contains(key)) EXPECT_NE(text, key) << language;
      EXPECT_TRUE(text.front() != ' ' && text.back() != ' ') << language << ": " << text;
      // The words of a sentence end as the sentence does.
      const bool isSentence = key.back() == '.';
      const bool ends = text.ends_with(".") || text.ends_with("。");
      EXPECT_EQ(ends, isSentence) << language << ": " << text;
    }
  }
}

TEST_F(StringsTable, QuotesWithTheMarksOfTheLanguage) {
  for (const auto& [language, table] : tables_) {
    if (language == "en") continue;
    for (const auto& [key, text] : table) {
      EXPECT_EQ(text.find('"'), std::string::npos) << language << ": " << text;
      EXPECT_EQ(text.find('\''), std::string::npos) << language << ": " << text;
      EXPECT_EQ(text.find("..."), std::string::npos) << language << ": " << text;
    }
  }
  // The marks of French stand apart from what they enclose, and no line ends between them.
  for (const auto& [key, text] : tables_.at("fr")) {
    EXPECT_EQ(text.find("\u00AB "), std::string::npos) << text;
    EXPECT_EQ(text.find(" \u00BB"), std::string::npos) << text;
  }
}

TEST_F(StringsTable, HoldsNoTextThatNothingShows) {
  const std::string source = code();
  const std::set<std::string> words = interfaceWords();
  for (const auto& [key, text] : english()) {
    EXPECT_TRUE(words.contains(key) || source.find(quoted(key)) != std::string::npos) << key;
  }
}

TEST_F(StringsTable, HoldsEveryWordOfTheUserInterfaceFile) {
  const std::set<std::string> words = interfaceWords();
  EXPECT_GE(words.size(), 18U);
  for (const std::string& word : words) {
    if (!kReplaced.contains(word)) EXPECT_TRUE(english().contains(word)) << word;
  }
}

TEST_F(StringsTable, HoldsEveryTextThatTheCodeLooksUp) {
  const std::string source = code();
  static const std::regex pattern("(?:localized|localizedFormat|showFinalMessage:|showSetupError:|return "
                                  ")\\s*\\(?\\s*@\"((?:[^\"\\\\]|\\\\.)+)\"");
  int found = 0;
  for (std::sregex_iterator it(source.begin(), source.end(), pattern), end; it != end; ++it) {
    std::string key = std::regex_replace((*it)[1].str(), std::regex("\\\\\""), "\"");
    key = std::regex_replace(key, std::regex("\\\\r"), "\r");
    EXPECT_TRUE(english().contains(key)) << key;
    ++found;
  }
  EXPECT_GE(found, 15);
}

TEST_F(StringsTable, HoldsTheFormatsOfTheUserInterfaceFileAsTheyStandThere) {
  int formats = 0;
  for (const std::string& word : interfaceWords()) {
    if (word.find("%@") != std::string::npos && english().contains(word)) ++formats;
  }
  EXPECT_EQ(formats, 3) << "the title, the introduction and the explanation";
}

// Each language in a bundle of the toolkit's, by the name of its folder.
TEST_F(StringsTable, IsFoundByTheNameOfItsLanguage) {
  for (const auto& [language, table] : tables_) {
    NSString* file = [bundle() pathForResource:@"Localizable"
                                        ofType:@"strings"
                                   inDirectory:nil
                               forLocalization:toNSString(language)];
    EXPECT_TRUE(toBytes(file).ends_with("/" + language + ".lproj/Localizable.strings")) << toBytes(file);
  }
}

}  // namespace
}  // namespace kr
