// How long the questions about the desktop and the environment take. Prints one "NAME VALUE" line for each
// figure, in milliseconds: probes.PROBE.CASE.first.ms for the first question of a program, and
// probes.PROBE.CASE.ms for the slowest of the later ones. The cases:
//
//   there    an X server with a window manager, a session bus and a desktop's settings portal
//   absent   none of them
//   bus      the same as there, but the bus does not answer
//   server   the same as there, but the X server stops answering after the first question
#import <Foundation/Foundation.h>
#include <signal.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#import "library/utilities/KRUtilities.h"
#include "platform/Services.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/Desktop.h"
#include "tests/support/SettingsPortal.h"

namespace {

using kr::testing::Child;
using kr::testing::Desktop;
using kr::testing::ScopedVariable;

constexpr int kLaterQuestions = 20;

struct Probe {
  const char* name;
  void (*ask)();
  bool needsFront = false;  // who is in front: a stopped X server keeps that question waiting
};

// Those that ask no service have no case that could be slow, but for the file system.
const Probe kProbes[] = {
    {"darkAppearance", [] { [KRUtilities darkAppearance]; }},
    {"fullScreenMode", [] { [KRUtilities fullScreenMode]; }},
    {"idleTime", [] { [KRUtilities idleTime]; }},
    {"doNotDisturbMode", [] { [KRUtilities doNotDisturbMode]; }},
    {"installationMode", [] { [KRUtilities installationMode]; }},
    {"resolvedAlias", [] { [KRUtilities resolvedAlias:@"/proc/self/exe"]; }},
    {"fileSystemType", [] { [KRUtilities fileSystemTypeFor:@"/usr/bin"]; }},
    {"wasLaunchedAsLoginItem", [] { [KRUtilities wasLaunchedAsLoginItem]; }},
    {"safeHTTPS", [] { [KRUtilities safeHTTPS:@"https:"]; }},
    {"secureInputProcesses", [] { [KRUtilities secureInputProcesses]; }},
    {"clipboardPublisherProcess", [] { [KRUtilities clipboardPublisherProcess]; }, true},
    {"debugging", [] { [KRUtilities debugging]; }},
};

double milliseconds(void (*code)()) {
  const auto start = std::chrono::steady_clock::now();
  @autoreleasepool {
    code();
  }
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

// In a program of its own. `server` is the process of an X server to stop after the first questions, or 0.
void measure(const char* condition, pid_t server) {
  // Some of them log, which is no part of the answer.
  kr::platform::testing::RecordingLog log;
  kr::platform::Services set = kr::platform::services();
  set.log = &log;
  const kr::platform::ScopedServices scope(set);
  // The class sets itself up when it is first used, which is no probe's.
  [KRUtilities class];
  std::vector<Probe> probes(std::begin(kProbes), std::end(kProbes));
  if (server != 0) std::erase_if(probes, [](const Probe& probe) { return probe.needsFront; });
  std::vector<double> first;
  for (const Probe& probe : probes) first.push_back(milliseconds(probe.ask));
  if (server != 0) ::kill(server, SIGSTOP);
  std::vector<double> slowest;
  for (const Probe& probe : probes) {
    double most = 0;
    for (int i = 0; i < kLaterQuestions; ++i) most = std::max(most, milliseconds(probe.ask));
    slowest.push_back(most);
  }
  if (server != 0) ::kill(server, SIGCONT);
  for (std::size_t i = 0; i < probes.size(); ++i) {
    std::printf("probes.%s.%s.first.ms %.3f\nprobes.%s.%s.ms %.3f\n", probes[i].name, condition, first[i],
                probes[i].name, condition, slowest[i]);
  }
}

// Runs this program again for one case.
void measureCase(const std::string& condition, pid_t server = 0) {
  Child child({"/proc/self/exe", condition, std::to_string(server)});
  if (child.wait(60) != 0) {
    std::fprintf(stderr, "no end of the case %s\n", condition.c_str());
    std::exit(1);
  }
}

}  // namespace

int main(int count, char** words) {
  @autoreleasepool {
    if (count == 3) {
      measure(words[1], std::atoi(words[2]));
      return 0;
    }
    {
      const Desktop none({.display = false});
      const ScopedVariable display("DISPLAY", ":4242");
      const ScopedVariable bus("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
      measureCase("absent");
    }
    Desktop desktop({.windowManager = true, .bus = true});
    const kr::testing::SettingsPortal portal(desktop.busAddress(), 1);
    measureCase("there");
    measureCase("server", desktop.displayProcess());
    desktop.signalBus(SIGSTOP);
    measureCase("bus");
    desktop.signalBus(SIGCONT);
  }
}
