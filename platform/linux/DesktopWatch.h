// The news of the window manager for every service of the program: one watch of the root window in the main
// thread's run loop, opened anew after the server was lost or DISPLAY has changed. Main thread.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/linux/RunLoopSource.h"
#include "platform/linux/X11RootWatch.h"
#include "platform/posix/FileDescriptor.h"

namespace kr::platform {

class DesktopWatch {
 public:
  // The one that all services of the program share. Starts with the first listener.
  [[nodiscard]] static DesktopWatch& shared();

  // Never `lost`: after a server was found again, everything counts as changed.
  using Listener = std::function<void(const X11RootWatch::News&)>;

  // Hears of what happens from now on.
  void listen(Listener listener);

  // Hears of changes of the active window's state as well, of its present state as soon as the run loop runs.
  void listenToActiveWindow(Listener listener);

 private:
  DesktopWatch();
  void signal() const;
  void takeSignal();
  void takeNews();
  void reopen();
  void open();
  void close();
  void tell(const X11RootWatch::News& news);

  std::vector<Listener> listeners_;
  bool followsActiveWindow_ = false;
  bool hasNewFollower_ = false;
  posix::FileDescriptor signalled_;
  RunLoopSource signalSource_;
  std::unique_ptr<X11RootWatch> watch_;
  std::optional<RunLoopSource> watchSource_;
  std::chrono::steady_clock::time_point openedAt_;
};

}  // namespace kr::platform
