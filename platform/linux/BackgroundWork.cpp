#include "platform/linux/BackgroundWork.h"

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace kr::platform {
namespace {

// Many times what handing over a document takes; the user waits for the program's end meanwhile.
constexpr std::chrono::seconds kLongestWaitAtTheEnd{1};

struct State {
  std::mutex mutex;
  std::condition_variable changed;
  int unfinished = 0;
};

void waitAtTheEnd();

// Never freed: a thread may work until the very end of the program.
State& state() {
  static State& shared = *new State;
  static const bool isWaitedFor = std::atexit(waitAtTheEnd) == 0;
  static_cast<void>(isWaitedFor);
  return shared;
}

void waitAtTheEnd() {
  std::unique_lock lock(state().mutex);
  state().changed.wait_for(lock, kLongestWaitAtTheEnd, [] { return state().unfinished == 0; });
}

void change(int by) {
  const std::lock_guard lock(state().mutex);
  state().unfinished += by;
  state().changed.notify_all();
}

}  // namespace

void workInBackground(std::function<void()> work) {
  change(1);
  const auto all = [work = std::move(work)] {
    work();
    change(-1);
  };
  try {
    std::thread(all).detach();
  } catch (const std::system_error&) {
    all();
  }
}

}  // namespace kr::platform
