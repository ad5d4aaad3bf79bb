// EventFlood PID CLASS ID TEXT COUNT: sends so many events with the text to the process as fast as the bus
// takes them.
#include <cstdlib>

#include "platform/linux/ProcFS.h"
#include "tests/support/BusPeer.h"

int main(int count, char** words) {
  if (count != 6) return 2;
  const auto receiver = kr::platform::procfs::serialNumber(std::atoi(words[1]));
  if (!receiver) return 1;
  const auto number = [&](int word) {
    return static_cast<std::uint32_t>(std::strtoul(words[word], nullptr, 0));
  };
  kr::testing::BusPeer().flood(*receiver, kr::testing::BusPeer::event(number(2), number(3), {words[4]}),
                               std::atoi(words[5]));
  return 0;
}
