// The command line as the installer reads it. Words are bytes as the caller gave them. Any thread.
//
//   parsedArguments({"Installer", "-productName", "Foo", "-quitCode", "AAAA", "BBBB"})
//     == {{"", "Installer"}, {"productName", "Foo"}, {"quitCode", {"AAAA", "BBBB"}}}
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kr {

using ArgumentValue = std::variant<std::string, std::vector<std::string>>;
using InstallerArguments = std::map<std::string, ArgumentValue, std::less<>>;

// A word that begins with "-" opens the key of that name without the dash; every other word is a value of the
// key that is open (the program's path goes to the key ""). A key that ends in "Code" gathers its values in a
// list; any other key keeps the last one. A key without a value stores nothing.
[[nodiscard]] InstallerArguments parsedArguments(const std::vector<std::string>& words);

// Whether a product started the installer, rather than the user from the desktop: there are arguments, and
// the first is not the language override that the system itself passes.
[[nodiscard]] bool isStartedByProduct(const std::vector<std::string>& words);

// The seconds that a text gives as a number at its front, in single precision; 0 when it does not begin with
// one.
[[nodiscard]] float secondsFromText(std::string_view text);

// One line for the log, in the form of property lists: (a, "b c") and {key = value; }.
[[nodiscard]] std::string listDescription(const std::vector<std::string>& words);
[[nodiscard]] std::string description(const InstallerArguments& arguments);

}  // namespace kr
