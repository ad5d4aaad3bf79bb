// Ends the processes of an in-memory table in the way that a test sets for each.
#pragma once

#include <map>
#include <memory>
#include <mutex>

#include "platform/ProcessControl.h"
#include "platform/testing/InMemoryProcessTable.h"

namespace kr::platform::testing {

// A request that never ends the process.
inline constexpr int kNeverEnds = -1;

// How a process takes requests. Without manners it ends at the first request of either kind.
struct Manners {
  int politeRequests = 1;       // so many requests of terminate() until it ends
  int forcedRequests = 1;       // so many of forceTerminate()
  bool politeDelivered = true;  // whether the request reaches it at all
  bool forcedDelivered = true;
};

class InMemoryProcessControl final : public ProcessControl {
 public:
  explicit InMemoryProcessControl(InMemoryProcessTable& table) : table_(table) {}

  // What the system is able to do.
  bool available = true;

  void setManners(pid_t pid, Manners manners) {
    const std::lock_guard lock(mutex_);
    states_[pid].manners = manners;
  }

  // Requests that were made so far, whether or not they were delivered.
  [[nodiscard]] int politeRequests(pid_t pid) {
    const std::lock_guard lock(mutex_);
    return states_[pid].polite;
  }
  [[nodiscard]] int forcedRequests(pid_t pid) {
    const std::lock_guard lock(mutex_);
    return states_[pid].forced;
  }

  bool isAvailable() override { return available; }

  std::unique_ptr<RunningApplication> running(pid_t pid) override {
    if (!table_.findPID(pid)) return nullptr;
    return std::make_unique<Application>(*this, pid);
  }

 private:
  struct State {
    Manners manners;
    int polite = 0;
    int forced = 0;
  };

  class Application final : public RunningApplication {
   public:
    Application(InMemoryProcessControl& control, pid_t pid) : control_(control), pid_(pid) {}

    bool terminate() override {
      return control_.request(pid_, &State::polite, &Manners::politeRequests, &Manners::politeDelivered);
    }
    bool forceTerminate() override {
      return control_.request(pid_, &State::forced, &Manners::forcedRequests, &Manners::forcedDelivered);
    }
    bool isTerminated() override { return !control_.table_.findPID(pid_); }

   private:
    InMemoryProcessControl& control_;
    pid_t pid_;
  };

  bool request(pid_t pid, int State::*count, int Manners::*needed, bool Manners::*delivered) {
    const std::lock_guard lock(mutex_);
    State& state = states_[pid];
    state.*count += 1;
    if (!(state.manners.*delivered) || !table_.findPID(pid)) return false;
    if (state.*count == state.manners.*needed) table_.endPID(pid);
    return true;
  }

  InMemoryProcessTable& table_;
  std::mutex mutex_;
  std::map<pid_t, State> states_;
};

}  // namespace kr::platform::testing
