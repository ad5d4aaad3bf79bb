// The running program: how it was started and where its bundle lies. Any thread.
#pragma once

#include <string>
#include <vector>

namespace kr::platform {

class Program {
 public:
  virtual ~Program() = default;

  // The command line, the program's path first. Words are bytes as the caller gave them.
  [[nodiscard]] virtual std::vector<std::string> arguments() = 0;

  // Path of the program's own bundle, or of the folder of its executable where it has none.
  [[nodiscard]] virtual std::string bundlePath() = 0;

  // Whether a debugger, or another program that traces processes, is attached to it.
  [[nodiscard]] virtual bool isDebugged() = 0;
};

}  // namespace kr::platform
