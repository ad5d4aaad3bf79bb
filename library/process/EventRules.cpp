#include "library/process/EventRules.h"

#include <limits>
#include <string_view>
#include <utility>

#include "platform/Log.h"
#include "platform/Services.h"

namespace kr {
namespace {

using platform::AppleEvent;
using platform::AppleEventError;

constexpr std::uint32_t kCoreEventClass = 0x61657674;  // 'aevt'
constexpr std::uint32_t kQuitEventID = 0x71756974;     // 'quit'

// Never interact, do not record.
constexpr std::int32_t kPlainMode = 0x1010;
// Wait for the reply, never interact, do not reconnect, do not record, do not execute.
constexpr std::int32_t kWaitingMode = 0x3093;
// No reply, always interact.
constexpr std::int32_t kTextMode = 49;
constexpr std::int32_t kQuitMode = 1;

constexpr std::int16_t kNormalPriority = 0;
constexpr std::int16_t kHighPriority = 1;

constexpr std::int32_t kTextTicks = 30;
constexpr std::int32_t kDefaultTicks = -1;

constexpr double kTicksPerSecond = 60.0;

std::string_view quitMessage(AppleEventError::Step step) {
  switch (step) {
    case AppleEventError::Step::address:
      return "quitting %@ failed (%d; could not create descriptor)";
    case AppleEventError::Step::build:
      return "quitting %@ failed (%d; could not create event)";
    case AppleEventError::Step::send:
      break;
  }
  return "quitting %@ failed (%d; could not send event)";
}

}  // namespace

AppleEvent plainEvent(std::uint32_t eventClass, std::uint32_t eventID, pid_t pid) {
  return {.eventClass = eventClass,
          .eventID = eventID,
          .target = pid,
          .directText = std::nullopt,
          .sendMode = kPlainMode,
          .sendPriority = kNormalPriority,
          .timeoutTicks = 0};
}

AppleEvent waitingEvent(std::uint32_t eventClass, std::uint32_t eventID, pid_t pid, float seconds) {
  AppleEvent event = plainEvent(eventClass, eventID, pid);
  event.sendMode = kWaitingMode;
  event.timeoutTicks = ticks(seconds);
  return event;
}

AppleEvent textEvent(std::uint32_t eventClass, std::uint32_t eventID, platform::SerialNumber process,
                     std::string text) {
  return {.eventClass = eventClass,
          .eventID = eventID,
          .target = process,
          .directText = std::move(text),
          .sendMode = kTextMode,
          .sendPriority = kNormalPriority,
          .timeoutTicks = kTextTicks};
}

AppleEvent quitEvent(platform::SerialNumber process) {
  return {.eventClass = kCoreEventClass,
          .eventID = kQuitEventID,
          .target = process,
          .directText = std::nullopt,
          .sendMode = kQuitMode,
          .sendPriority = kHighPriority,
          .timeoutTicks = kDefaultTicks};
}

std::int32_t ticks(float seconds) {
  constexpr auto kMost = std::numeric_limits<std::int32_t>::max();
  const double exact = static_cast<double>(seconds) * kTicksPerSecond;
  if (exact >= static_cast<double>(kMost)) return kMost;
  // Also what is not a number.
  if (!(exact > static_cast<double>(std::numeric_limits<std::int32_t>::min()))) return 0;
  return static_cast<std::int32_t>(exact);
}

void sendAndLog(const AppleEvent& event) {
  const std::optional<AppleEventError> error = platform::services().appleEvents->send(event);
  if (error && error->step == AppleEventError::Step::send) log("*** event error: %d", error->status);
}

void sendQuitEvent(platform::SerialNumber process, const std::optional<std::string>& name) {
  const std::optional<AppleEventError> error = platform::services().appleEvents->send(quitEvent(process));
  if (error) log(quitMessage(error->step), name, error->status);
}

}  // namespace kr
