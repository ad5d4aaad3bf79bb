#include "installer/LaunchArguments.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

namespace kr {
namespace {

constexpr std::string_view kListSuffix = "Code";
constexpr std::string_view kLanguageOverride = "-AppleLanguages";
constexpr std::size_t kWordsOfAProduct = 3;

bool needsNoQuotes(unsigned char character) {
  return std::isalnum(character) != 0 || character == '_' || character == '.' || character == '/' ||
         character == '$' || character == ':';
}

std::string quoted(std::string_view word) {
  if (!word.empty() && std::all_of(word.begin(), word.end(), needsNoQuotes)) return std::string(word);
  std::string text = "\"";
  for (const char character : word) {
    if (character == '"' || character == '\\') text += '\\';
    text += character;
  }
  return text + '"';
}

}  // namespace

InstallerArguments parsedArguments(const std::vector<std::string>& words) {
  InstallerArguments arguments;
  std::string key;
  for (const std::string& word : words) {
    if (word.starts_with('-')) {
      key = word.substr(1);
    } else if (key.ends_with(kListSuffix)) {
      ArgumentValue& value = arguments.try_emplace(key, std::vector<std::string>{}).first->second;
      std::get<std::vector<std::string>>(value).push_back(word);
    } else {
      arguments[key] = word;
    }
  }
  return arguments;
}

bool isStartedByProduct(const std::vector<std::string>& words) {
  return words.size() >= kWordsOfAProduct && words[1] != kLanguageOverride;
}

float secondsFromText(std::string_view text) {
  const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
  if (start == std::string_view::npos) return 0;
  // Only decimal notation counts: strtof would also read "inf", "nan" and hexadecimal numbers.
  const std::size_t end = text.find_first_not_of("+-.0123456789eE", start);
  const std::string number(text.substr(start, end == std::string_view::npos ? end : end - start));
  return std::strtof(number.c_str(), nullptr);
}

std::string listDescription(const std::vector<std::string>& words) {
  std::string text = "(";
  for (const std::string& word : words) {
    if (text.size() > 1) text += ", ";
    text += quoted(word);
  }
  return text + ")";
}

std::string description(const InstallerArguments& arguments) {
  std::string text = "{";
  for (const auto& [key, value] : arguments) {
    const auto* list = std::get_if<std::vector<std::string>>(&value);
    text +=
        quoted(key) + " = " + (list ? listDescription(*list) : quoted(std::get<std::string>(value))) + "; ";
  }
  return text + "}";
}

}  // namespace kr
