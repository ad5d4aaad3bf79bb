// Takes Apple events off the session bus under the name of the test's own process, on a thread of its own.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/SerialNumber.h"

namespace kr::testing {

struct ReceivedEvent {
  std::uint32_t eventClass;
  std::uint32_t eventID;
  std::vector<std::string> directTexts;
  bool wantsReply;

  friend bool operator==(const ReceivedEvent&, const ReceivedEvent&) = default;
};

// How it answers an event that wants a reply.
enum class EventAnswer { handled, refused, never };

class EventReceiver {
 public:
  // Owns the name once this returns. Throws std::runtime_error where there is no bus.
  explicit EventReceiver(platform::SerialNumber process, EventAnswer answer = EventAnswer::handled);
  ~EventReceiver();

  [[nodiscard]] std::vector<ReceivedEvent> received() const;

 private:
  struct Bus;

  mutable std::mutex mutex_;
  std::vector<ReceivedEvent> received_;
  std::unique_ptr<Bus> bus_;
  std::thread thread_;
};

}  // namespace kr::testing
