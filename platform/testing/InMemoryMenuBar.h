// A menu bar that the test hides and shows.
#pragma once

#include <utility>
#include <vector>

#include "platform/MenuBar.h"

namespace kr::platform::testing {

class InMemoryMenuBar final : public MenuBar {
 public:
  bool canInstall = true;
  int installations = 0;
  std::vector<EventType> wanted;
  Handler handler;

  bool installHandler(Handler newHandler, std::span<const EventType> events) override {
    ++installations;
    if (!canInstall) return false;
    handler = std::move(newHandler);
    wanted.assign(events.begin(), events.end());
    return true;
  }
};

}  // namespace kr::platform::testing
