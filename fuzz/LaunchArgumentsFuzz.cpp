// Command lines: whoever starts the installer chooses the words.
#include <cmath>
#include <set>

#include "fuzz/Fuzz.h"
#include "installer/LaunchArguments.h"

namespace {

using kr::fuzz::require;

// A quotation mark that is not itself quoted opens or closes a word.
bool closesItsQuotes(std::string_view text) {
  bool open = false;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (open && text[at] == '\\') {
      ++at;
    } else if (text[at] == '"') {
      open = !open;
    }
  }
  return !open;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<std::string> words = kr::fuzz::words(kr::fuzz::text(data, size));
  const std::set<std::string, std::less<>> given(words.begin(), words.end());
  const kr::InstallerArguments arguments = kr::parsedArguments(words);
  for (const auto& [key, value] : arguments) {
    require(key.empty() || given.contains("-" + key), "a key is a word without its dash");
    const auto* list = std::get_if<std::vector<std::string>>(&value);
    require((list != nullptr) == key.ends_with("Code"), "a key that ends in Code has a list");
    const auto isGiven = [&](const std::string& word) { return given.contains(word); };
    require(list != nullptr ? !list->empty() && std::all_of(list->begin(), list->end(), isGiven)
                            : isGiven(std::get<std::string>(value)),
            "a value is one of the words");
  }
  require(closesItsQuotes(kr::description(arguments)), "the description closes its quotation marks");
  require(closesItsQuotes(kr::listDescription(words)), "the description of a list closes them as well");
  require(!kr::isStartedByProduct(words) || words.size() > 2, "a product passes arguments");
  for (const std::string& word : words)
    require(!std::isnan(kr::secondsFromText(word)), "seconds are a number");
  return 0;
}
