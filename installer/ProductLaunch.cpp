#include "installer/ProductLaunch.h"

#include "platform/Clock.h"
#include "platform/Log.h"
#include "platform/Services.h"

namespace kr {
namespace {

constexpr double kBeforeRegistering = 0.5;
constexpr double kAfterRegistering = 0.3;
constexpr double kBeforeSecondIcon = 1.0;
constexpr double kBetweenLaunches = 0.5;
constexpr int kLastRetry = 9;  // the counter at which the last retry begins

void sleep(double seconds) {
  platform::services().clock->sleep(seconds);
}

void registerProduct(LaunchSteps& steps) {
  const Guarded<std::int32_t> status = steps.registerProduct();
  if (status.exception) {
    log("EXCEPTION @ LSRegisterURL: %@", status.exception);
  } else {
    log("registered app: %d", status.value);
  }
}

void probeIcon(LaunchSteps& steps) {
  Guarded<bool> icon = steps.hasIcon();
  if (!icon.exception && !icon.value) {
    log("did not get icon");
    sleep(kBeforeSecondIcon);
    icon = steps.hasIcon();
    if (!icon.exception) log("retry; %@", icon.value ? "succeeded" : "failed");
  }
  if (icon.exception) log("EXCEPTION @ iconForFile: %@", icon.exception);
}

void open(LaunchSteps& steps) {
  Guarded<bool> launched = steps.open();
  if (launched.exception) {
    log("EXCEPTION @ openFile: %@", launched.exception);
    launched = {};
  } else {
    log("launched immediately: %d", launched.value);
  }
  int count = 0;
  while (!launched.value && count <= kLastRetry) {
    ++count;
    sleep(kBetweenLaunches);
    log("retry opening (count=%d)", count);
    launched = steps.open();
    if (launched.exception) {
      log("EXCEPTION @ retry loop (count=%d): %@", count, launched.exception);
      return;
    }
    log("launched: %d", launched.value);
  }
}

}  // namespace

void launchProduct(const std::string& destination, LaunchSteps& steps) {
  log("launching %@", destination);
  sleep(kBeforeRegistering);
  log("waited 0.5");
  registerProduct(steps);
  sleep(kAfterRegistering);
  log("waited 0.3");
  probeIcon(steps);
  open(steps);
  steps.bringInstallerForward();
}

}  // namespace kr
