// The kernel's line about a process, which holds a name that the process chose.
#include "fuzz/Fuzz.h"
#include "platform/linux/ProcFS.h"

using kr::fuzz::require;
using kr::platform::procfs::parseStatus;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input = kr::fuzz::text(data, size);
  if (const auto status = parseStatus(input)) {
    require(input.find(status->state) != std::string_view::npos, "the state is read from the line");
  }
  // Fields 4 to 13, 15 to 21 and those after the start are of no interest.
  const std::string line =
      "42 (" + std::string(input) + ") S 1 2 3 4 5 6 7 8 9 10 77 1 2 3 4 5 6 7 8899 0 0\n";
  const auto status = parseStatus(line);
  require(status && status->state == 'S' && status->userTicks == 77 && status->startTicks == 8899,
          "no name moves the fields");
  return 0;
}
