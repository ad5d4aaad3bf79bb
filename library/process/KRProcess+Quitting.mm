#include <array>
#include <cstdio>
#include <cstdlib>

#include "library/process/EventRules.h"
#import "library/process/KRProcess+Private.h"
#include "library/process/QuitSchedule.h"

namespace {

constexpr float kQuitSeconds = 4.0F;

}  // namespace

@implementation KRProcess (Quitting)

- (BOOL)quitRunningApplicationWithTimeout:(float)seconds {
  // The name first: once the process has gone it cannot be had any more.
  const std::optional<std::string> ownName = kr::nameForLog(self);
  return kr::quitWithTimeout([self unixPID], ownName, seconds);
}

- (void)quit {
  if ([self quitRunningApplicationWithTimeout:kQuitSeconds]) return;
  kr::sendQuitEvent(psn, kr::nameForLog(self));
}

- (void)forceQuit {
  const pid_t pid = [self unixPID];
  if (pid == 0) return;
  std::array<char, 100> command{};
  std::snprintf(command.data(), command.size(), "kill -9 %d", pid);
  // Nobody is told whether it went.
  [[maybe_unused]] const int status = std::system(command.data());
}

@end
