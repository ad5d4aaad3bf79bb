// Work on a thread of its own that comes to its end though the window it was started in has gone: while one
// of these lives, the loss of the window server does not end the program. Any thread.
#pragma once

namespace kr::platform {

class UnfinishedWork {
 public:
  UnfinishedWork() noexcept;
  ~UnfinishedWork();
  UnfinishedWork(const UnfinishedWork&) = delete;
  UnfinishedWork& operator=(const UnfinishedWork&) = delete;

  [[nodiscard]] static bool exists() noexcept;

  // For the main thread once its window server is lost: waits until there is no work left. It serves no run
  // loop from now on.
  static void finishAll() noexcept;

  // Whether finishAll() was called. Who waits for an answer of the main thread would wait for ever then.
  [[nodiscard]] static bool isLeftAlone() noexcept;
};

}  // namespace kr::platform
