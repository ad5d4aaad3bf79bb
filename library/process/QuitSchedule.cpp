#include "library/process/QuitSchedule.h"

#include <memory>
#include <string_view>

#include "platform/Clock.h"
#include "platform/Log.h"
#include "platform/ProcessControl.h"
#include "platform/Services.h"

namespace kr {
namespace {

constexpr double kBetweenRequests = 0.001;

// One of the two ways to end an application, with its log lines.
// one stays.
struct Phase {
  bool (platform::RunningApplication::*request)();
  std::string_view stopped;     // the request found nobody to take it
  std::string_view terminated;  // the process ended after it
};

constexpr Phase kPolite{&platform::RunningApplication::terminate,
                        "quit %@: process stopped after %1.3fs (%d attempts)",
                        "quit %@: terminated after %1.3fs (%d attempts)"};
constexpr Phase kForced{&platform::RunningApplication::forceTerminate,
                        "foce-quit %@: process stopped after %1.3fs (%d attempts)",
                        "force-quit %@: terminated after %1.3fs (%d attempts)"};

// Sends the request again and again. False when the time has passed and the process still runs.
bool run(const Phase& phase, platform::RunningApplication& application,
         const std::optional<std::string>& name, double limit) {
  platform::Clock& clock = *platform::services().clock;
  const double start = clock.monotonicSeconds();
  const auto elapsed = [&] { return clock.monotonicSeconds() - start; };
  int attempts = 0;
  while (elapsed() < limit) {
    if (!(application.*phase.request)()) {
      log(phase.stopped, name, elapsed(), attempts + 1);
      return true;
    }
    ++attempts;
    clock.sleep(kBetweenRequests);
    if (application.isTerminated()) {
      log(phase.terminated, name, elapsed(), attempts);
      return true;
    }
  }
  return false;
}

}  // namespace

bool quitWithTimeout(pid_t pid, const std::optional<std::string>& name, float seconds) {
  platform::ProcessControl& control = *platform::services().processControl;
  if (!control.isAvailable()) {
    log("cannot quit %@: NSRunningApplication not available", name);
    return false;
  }
  if (pid == 0) {
    log("cannot quit %@: no pid", name);
    return false;
  }
  const std::unique_ptr<platform::RunningApplication> application = control.running(pid);
  if (!application) {
    log("cannot quit %@: no process found", name);
    return false;
  }
  const double limit = seconds;
  if (run(kPolite, *application, name, limit) || run(kForced, *application, name, limit)) return true;
  log("quitting %@ failed", name);
  return false;
}

}  // namespace kr
