#include "platform/linux/copy/Crew.h"

#include <signal.h>

#include <system_error>

namespace kr::platform::copy {
namespace {

// Below this, waking the helper costs more than it saves.
constexpr std::size_t kWorthHelp = 4;

}  // namespace

Crew::~Crew() {
  if (!helper_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    isOver_ = true;
  }
  changed_.notify_all();
  helper_.join();
}

void Crew::run(std::size_t count, const Work& work) {
  if (count < kWorthHelp || !haveHelper()) {
    for (std::size_t index = 0; index < count; ++index) work(index, 0);
    return;
  }
  {
    const std::lock_guard lock(mutex_);
    work_ = &work;
    count_ = count;
    next_ = 0;
  }
  changed_.notify_all();
  drain(work, count, 0);
  // A helper that has not woken up by now finds nothing to do.
  std::unique_lock lock(mutex_);
  work_ = nullptr;
  changed_.wait(lock, [this] { return !isHelping_; });
}

void Crew::drain(const Work& work, std::size_t count, int worker) {
  for (std::size_t index = next_++; index < count; index = next_++) work(index, worker);
}

void Crew::help() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return isOver_ || work_ != nullptr; });
    if (isOver_) return;
    isHelping_ = true;
    const Work* work = work_;
    const std::size_t count = count_;
    lock.unlock();
    drain(*work, count, 1);
    lock.lock();
    // This list is done; the next one comes with another call.
    if (work_ == work) work_ = nullptr;
    isHelping_ = false;
    changed_.notify_all();
  }
}

bool Crew::haveHelper() {
  if (helper_.joinable()) return true;
  if (isAlone_) return false;
  // Signals are the business of the program that copies.
  sigset_t all;
  sigset_t previous;
  ::sigfillset(&all);
  ::pthread_sigmask(SIG_SETMASK, &all, &previous);
  try {
    helper_ = std::thread([this] { help(); });
  } catch (const std::system_error&) {
    isAlone_ = true;
  }
  ::pthread_sigmask(SIG_SETMASK, &previous, nullptr);
  return !isAlone_;
}

}  // namespace kr::platform::copy
