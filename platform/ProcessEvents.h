// Tells when applications start, end and come to the front, as the system tells it: nobody asks over and
// over, and while nothing happens nothing runs.
#pragma once

#include <cstdint>
#include <functional>

#include "platform/SerialNumber.h"

namespace kr::platform {

// Kinds of the event class 'appl', numbered as the system numbers them.
inline constexpr std::uint32_t kApplicationLaunched = 5;
inline constexpr std::uint32_t kApplicationEnded = 6;
inline constexpr std::uint32_t kFrontApplicationChanged = 7;

class ProcessEvents {
 public:
  // Called on the main thread, out of its run loop, once for each event. The kind is one of the above, or
  // another one that the system has sent.
  using Handler = std::function<void(std::uint32_t kind)>;

  virtual ~ProcessEvents() = default;

  // Tells of everything that happens from now on. Main thread; once per program.
  virtual void start(Handler handler) = 0;

  // The program has come across an application. Its end is told from now on, whether or not the system had
  // told of its start; one that was not known is told as launched. Nothing for a process that has ended. Any
  // thread.
  virtual void learn(SerialNumber process) = 0;
};

}  // namespace kr::platform
