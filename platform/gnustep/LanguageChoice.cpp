#include "platform/gnustep/LanguageChoice.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace kr {
namespace {

using Languages = std::vector<std::string>;

// The toolkit's own names of languages.
constexpr std::array<std::pair<std::string_view, std::string_view>, 18> kNames{{
    {"arabic", "ar"},
    {"brasilportuguese", "pt-br"},
    {"c", "en"},
    {"chinese", "zh"},
    {"dutch", "nl"},
    {"english", "en"},
    {"french", "fr"},
    {"german", "de"},
    {"italian", "it"},
    {"japanese", "ja"},
    {"korean", "ko"},
    {"polish", "pl"},
    {"portuguese", "pt"},
    {"posix", "en"},
    {"russian", "ru"},
    {"simplifiedchinese", "zh-hans"},
    {"spanish", "es"},
    {"swedish", "sv"},
}};

// Forms of Chinese that the simplified script is read in.
constexpr std::array<std::string_view, 4> kSimplified{"zh", "zh-cn", "zh-sg", "zh-my"};

char lower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

// In small letters, with dashes, without an encoding or a modifier.
std::string tag(std::string_view name) {
  std::string result(name.substr(0, name.find_first_of(".@")));
  std::transform(result.begin(), result.end(), result.begin(),
                 [](char character) { return character == '_' ? '-' : lower(character); });
  const auto known =
      std::find_if(kNames.begin(), kNames.end(), [&](const auto& entry) { return entry.first == result; });
  if (known != kNames.end()) result = known->second;
  if (std::find(kSimplified.begin(), kSimplified.end(), result) != kSimplified.end()) result = "zh-hans";
  return result;
}

// Whether the tag begins with the other one, as a whole part of it.
bool beginsWith(const std::string& whole, const std::string& beginning) {
  return whole.starts_with(beginning) && (whole.size() == beginning.size() || whole[beginning.size()] == '-');
}

// The language without script and region. In Chinese the script says who can read it.
std::string base(const std::string& of) {
  return of.starts_with("zh-") ? of.substr(0, 7) : of.substr(0, of.find('-'));
}

std::optional<std::string> suiting(const std::string& wanted, const Languages& available) {
  const auto find = [&](auto suits) -> std::optional<std::string> {
    const auto found = std::find_if(available.begin(), available.end(),
                                    [&](const std::string& one) { return suits(tag(one)); });
    return found == available.end() ? std::nullopt : std::optional(*found);
  };
  if (const auto same = find([&](const std::string& one) { return one == wanted; })) return same;
  return find([&](const std::string& one) { return beginsWith(one, base(wanted)); });
}

}  // namespace

Languages chooseLanguages(const Languages& wanted, const Languages& available) {
  Languages chosen;
  const auto add = [&](const std::string& name) {
    const auto suits = suiting(tag(name), available);
    if (suits && std::find(chosen.begin(), chosen.end(), *suits) == chosen.end()) chosen.push_back(*suits);
  };
  for (const std::string& name : wanted) {
    if (!name.empty()) add(name);
  }
  add("en");
  return chosen;
}

Languages languagesOfEnvironment(std::string_view language, const Languages& locales) {
  Languages wanted;
  while (!language.empty()) {
    const std::size_t end = std::min(language.find(':'), language.size());
    if (end > 0) wanted.emplace_back(language.substr(0, end));
    language.remove_prefix(std::min(end + 1, language.size()));
  }
  if (!wanted.empty()) return wanted;
  const auto given =
      std::find_if(locales.begin(), locales.end(), [](const std::string& one) { return !one.empty(); });
  if (given != locales.end()) wanted.push_back(*given);
  return wanted;
}

}  // namespace kr
