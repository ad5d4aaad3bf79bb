// Ends other applications, politely or by force. Any thread.
#pragma once

#include <sys/types.h>

#include <memory>

namespace kr::platform {

// One running application, held so that a later process with the same ID is never mistaken for it.
class RunningApplication {
 public:
  virtual ~RunningApplication() = default;

  // Asks the application to quit, as the user would. False when the request could not be delivered, which is
  // so when the process has already gone.
  [[nodiscard]] virtual bool terminate() = 0;

  // Ends the process without asking. False as above.
  [[nodiscard]] virtual bool forceTerminate() = 0;

  [[nodiscard]] virtual bool isTerminated() = 0;
};

class ProcessControl {
 public:
  virtual ~ProcessControl() = default;

  // False where the system offers no way to end applications.
  [[nodiscard]] virtual bool isAvailable() = 0;

  // The application with this process ID; null when there is none.
  [[nodiscard]] virtual std::unique_ptr<RunningApplication> running(pid_t pid) = 0;
};

}  // namespace kr::platform
