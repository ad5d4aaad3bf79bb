// The program's connection to the sound server. It is made when a sound is first wanted, and made anew after
// it was lost; a server is never started. Everything that waits has a limit: a server that hangs costs its
// caller that time, and not again while it hangs. Any thread.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/PulseLibrary.h"

namespace kr::platform {

// An output device of the server.
struct PulseSink {
  std::uint32_t index = 0;
  std::string name;         // unique, the same in every session
  std::string description;  // for people
  std::string maker;        // of the device, or the driver where that is not known
};

class PulseConnection {
 public:
  using Seconds = std::chrono::duration<double>;

  // The one of the program; null where libpulse is not installed. It is never destroyed.
  [[nodiscard]] static PulseConnection* shared() noexcept;

  // What the server answers within a second.
  [[nodiscard]] std::optional<PulseSink> defaultSink();
  [[nodiscard]] std::optional<PulseSink> sink(std::uint32_t index);
  [[nodiscard]] std::vector<PulseSink> sinks();

  // For streams. Whether there is a connection that works, waited for at most so long.
  [[nodiscard]] bool isReady(Seconds patience);

  [[nodiscard]] const PulseLibrary& pulse() const { return pulse_; }

  // Holds the lock of the library's thread, without which no function of the library may be called. Waiting
  // for anything else meanwhile would stop that thread.
  class Lock {
   public:
    explicit Lock(PulseConnection& connection) : connection_(connection) {
      connection.pulse_.threaded_mainloop_lock(connection.loop_);
    }
    ~Lock() { connection_.pulse_.threaded_mainloop_unlock(connection_.loop_); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

   private:
    PulseConnection& connection_;
  };

  // The context of the connection; needs the lock. Null where there is none.
  [[nodiscard]] pa_context* context() const { return context_; }

  // Why the last call of the library failed; needs the lock.
  [[nodiscard]] std::string problem() const;

  // From callbacks of the library: wakes all who wait.
  void announce();

  // Waits until the condition holds, at most so long. It is asked after every announcement, with the lock of
  // the library's thread.
  [[nodiscard]] bool waitUntil(const std::function<bool()>& condition, Seconds patience);

 private:
  struct Query;

  explicit PulseConnection(const PulseLibrary& pulse);

  bool startLoop();
  bool connect();
  void drop();
  void report(const std::string& problem);
  bool ask(Query& query, const std::function<pa_operation*(Query&)>& start);
  std::optional<PulseSink> firstSink(const std::function<pa_operation*(Query&)>& start);

  const PulseLibrary& pulse_;
  pa_threaded_mainloop* loop_ = nullptr;
  pa_context* context_ = nullptr;
  bool givenUp_ = false;  // somebody has waited for this connection in vain
  std::string reported_;

  std::mutex mutex_;
  std::condition_variable changed_;
  std::uint64_t announcements_ = 0;
};

}  // namespace kr::platform
