// Tells which program last changed the clipboard: the clipboard itself says only how often it was changed, so
// what counts is which program was in front in the meantime.
#pragma once

#include <concepts>
#include <utility>

namespace kr {

// `Process` is a value that can be compared and be empty (value-initialised). Not locked: one thread.
template <class Process>
class ClipboardPublisher {
 public:
  // The process is in front; `changeCount` is asked only when another one was before.
  template <std::invocable ChangeCount>
  void processSwitched(const Process& front, ChangeCount&& changeCount) {
    if (front == active_) return;
    const long count = changeCount();
    if (!(active_ == Process{}) && count != countAtStart_) publisher_ = std::move(active_);
    active_ = front;
    countAtStart_ = count;
  }

  // The program that changed the clipboard last; empty while none is known.
  template <std::invocable ChangeCount>
  [[nodiscard]] Process publisher(const Process& front, ChangeCount&& changeCount) {
    processSwitched(front, changeCount);
    return changeCount() == countAtStart_ ? publisher_ : active_;
  }

 private:
  Process active_{};
  Process publisher_{};
  long countAtStart_ = 0;
};

}  // namespace kr
