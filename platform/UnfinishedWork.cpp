#include "platform/UnfinishedWork.h"

#include <condition_variable>
#include <mutex>

namespace kr::platform {
namespace {

struct State {
  std::mutex mutex;
  std::condition_variable changed;
  int unfinished = 0;
  bool leftAlone = false;
};

// Never freed: a thread may work until the very end of the program.
State& state() {
  static State& shared = *new State;
  return shared;
}

}  // namespace

UnfinishedWork::UnfinishedWork() noexcept {
  const std::lock_guard lock(state().mutex);
  ++state().unfinished;
}

UnfinishedWork::~UnfinishedWork() {
  const std::lock_guard lock(state().mutex);
  --state().unfinished;
  state().changed.notify_all();
}

bool UnfinishedWork::exists() noexcept {
  const std::lock_guard lock(state().mutex);
  return state().unfinished > 0;
}

void UnfinishedWork::finishAll() noexcept {
  std::unique_lock lock(state().mutex);
  state().leftAlone = true;
  state().changed.wait(lock, [] { return state().unfinished == 0; });
}

bool UnfinishedWork::isLeftAlone() noexcept {
  const std::lock_guard lock(state().mutex);
  return state().leftAlone;
}

}  // namespace kr::platform
