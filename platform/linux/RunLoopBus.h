// Lets a connection to a message bus work whenever the main run loop finds its descriptor ready. Main thread.
#pragma once

#include <functional>
#include <memory>
#include <optional>

namespace kr::platform {

// What a connection waits for; changes whenever it works.
struct BusReadiness {
  int descriptor;
  bool write;  // also until it can be written; it is always to be read

  friend bool operator==(const BusReadiness&, const BusReadiness&) = default;
};

class RunLoopBus {
 public:
  // The connection has to live as long as this. None of readiness: there is nothing to wait for any more.
  RunLoopBus(std::function<std::optional<BusReadiness>()> readiness, std::function<void()> work);
  ~RunLoopBus();
  RunLoopBus(const RunLoopBus&) = delete;
  RunLoopBus& operator=(const RunLoopBus&) = delete;

  // To be called when the connection has worked, begun or ended outside the run loop.
  void refresh();

 private:
  void* watcher_;  // an Objective-C object
};

}  // namespace kr::platform
