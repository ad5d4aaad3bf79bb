// Keeps which application is in front, and every request, for a test to look at.
#pragma once

#include <optional>
#include <vector>

#include "platform/WindowOrder.h"

namespace kr::platform::testing {

struct WindowRequest {
  enum class Kind { front, frontWindowOnly, show, hide, wake };
  Kind kind;
  SerialNumber process;

  friend bool operator==(const WindowRequest&, const WindowRequest&) = default;
};

class InMemoryWindowOrder final : public WindowOrder {
 public:
  // Every request so far, oldest first.
  std::vector<WindowRequest> requests;

  // What front() answers; a request to come to the front changes it.
  std::optional<SerialNumber> inFront;

  std::optional<SerialNumber> front() override { return inFront; }
  void setFront(SerialNumber process, bool frontWindowOnly) override {
    requests.push_back(
        {frontWindowOnly ? WindowRequest::Kind::frontWindowOnly : WindowRequest::Kind::front, process});
    inFront = process;
  }
  void setVisible(SerialNumber process, bool visible) override {
    requests.push_back({visible ? WindowRequest::Kind::show : WindowRequest::Kind::hide, process});
  }
  void wake(SerialNumber process) override { requests.push_back({WindowRequest::Kind::wake, process}); }
};

}  // namespace kr::platform::testing
