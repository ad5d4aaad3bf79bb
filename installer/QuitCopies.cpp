#include "installer/QuitCopies.h"

#include "platform/Clock.h"
#include "platform/Log.h"
#include "platform/Services.h"

namespace kr {
namespace {

constexpr int kFurtherRounds = 3;
constexpr double kSecondsBetweenRounds = 1.0;

}  // namespace

std::optional<std::string> quitRunningCopies(const QuitActions& actions) {
  actions.askToQuit();
  if (const auto name = actions.stillRunning()) {
    log("%@ did not quit; will retry", name);
    for (int round = 0; round < kFurtherRounds; ++round) {
      platform::services().clock->sleep(kSecondsBetweenRounds);
      actions.askToQuit();
      if (!actions.stillRunning()) break;
    }
  }
  std::optional<std::string> refused = actions.stillRunning();
  if (refused) log("%@ refused to quit; installation cancelled", refused);
  return refused;
}

}  // namespace kr
