// Runs scripts and shell commands and answers what they have written. Blocks; any thread.
#pragma once

#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace kr {

struct ShellScript {
  std::string path;  // "~" stands for the home folder, "~NAME" for another user's
  std::optional<std::vector<std::string>> parameters;  // none: the script is started without
  std::optional<std::string> parametersText;           // the parameters as a line about a timeout shows them
  std::optional<std::string> fault;                    // why it cannot be started as it is wanted
  double timeout = 0;                                  // seconds
};

// What the script has written to its standard output and error, in that order, until it ended or its time was
// up; none when that is not UTF-8, and the log says so. A script that could not be started has as its text
// that it has failed; nothing raises. The file itself is started, in the home folder, with nothing to read:
// it says by itself what interprets it. When its time is up, it is asked to end, along with what it has
// started; nobody waits for it to do so.
[[nodiscard]] std::optional<std::u16string> runShellScript(const ShellScript& script);

struct CommandResult {
  std::optional<std::u16string> output;  // none when it is not UTF-8
  std::error_code error;                 // why there is no shell
};

// What a command line of the shell has written to its standard output, once everybody has closed that. Input
// and errors are those of the program.
[[nodiscard]] CommandResult runShellCommand(const std::string& commandLine);

}  // namespace kr
