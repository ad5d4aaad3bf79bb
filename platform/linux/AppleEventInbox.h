// Takes Apple events off the session bus, in the form of AppleEventBus.h. It has no thread and no queue of
// its own: whoever runs it waits until the descriptor is ready and then lets it work for a moment. What it
// has not taken yet waits in the socket and on the bus, so a flood of events costs this program neither
// memory nor its window. One thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/linux/RunLoopBus.h"

struct sd_bus;

namespace kr::platform {

class AppleEventInbox {
 public:
  // Answers whether it has handled the event. The text is UTF-8; none where the direct object is missing or
  // no text. Does not throw.
  using Handler = std::function<bool(std::uint32_t eventClass, std::uint32_t eventID,
                                     const std::optional<std::string>& directText)>;

  explicit AppleEventInbox(Handler handler);
  ~AppleEventInbox();
  AppleEventInbox(const AppleEventInbox&) = delete;
  AppleEventInbox& operator=(const AppleEventInbox&) = delete;

  // Begins to connect and to take the name of this process; does not wait for the bus. Without a bus, or once
  // it has ended, there is nothing to wait for and no event comes.
  void open() noexcept;

  // What to wait for. Nothing while the handler runs: who runs a loop in there is not woken by what has to
  // wait for its end.
  [[nodiscard]] std::optional<BusReadiness> readiness() const noexcept;

  // Takes what has come, one event after the other, until nothing is left or the time is up. Does nothing out
  // of the handler: what comes meanwhile is taken after it.
  void work(std::chrono::milliseconds atMost) noexcept;

 private:
  struct CloseBus {
    void operator()(sd_bus* bus) const;
  };

  Handler handler_;
  std::unique_ptr<sd_bus, CloseBus> bus_;
};

}  // namespace kr::platform
