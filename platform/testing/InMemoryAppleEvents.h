// Keeps the Apple events that were sent, and answers as a test sets it.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "platform/AppleEvents.h"

namespace kr::platform::testing {

class InMemoryAppleEvents final : public AppleEvents {
 public:
  // Every event so far, oldest first.
  std::vector<AppleEvent> sent;

  // What send() answers; success at first.
  std::optional<AppleEventError> answer;

  // Called with each event before it is answered.
  std::function<void(const AppleEvent&)> onSend;

  std::optional<AppleEventError> send(const AppleEvent& event) override {
    sent.push_back(event);
    if (onSend) onSend(event);
    return answer;
  }
};

}  // namespace kr::platform::testing
