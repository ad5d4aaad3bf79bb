#include "platform/linux/copy/Crew.h"

#include <signal.h>

#include <system_error>

namespace kr::platform::copy {
namespace {

// Enough that the helper does not run dry while the next folders are looked through.
constexpr std::size_t kWaitingLists = 4;

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

void Crew::add(std::size_t count, Work work) {
  const auto list = std::make_shared<List>(count, std::move(work));
  if (!haveHelper()) return drain(*list, 0);
  std::unique_lock lock(mutex_);
  lists_.push_back(list);
  changed_.notify_all();
  while (lists_.size() > kWaitingLists) (void)workOnFirst(lock, 0);
}

void Crew::finish() {
  std::unique_lock lock(mutex_);
  while (workOnFirst(lock, 0)) {
  }
  changed_.wait(lock, [this] { return !isHelping_; });
}

void Crew::drain(List& list, int worker) {
  for (std::size_t index = list.next++; index < list.count; index = list.next++) list.work(index, worker);
}

// False when there is no list. The last calls of the list may still be another worker's when it returns.
bool Crew::workOnFirst(std::unique_lock<std::mutex>& lock, int worker) {
  if (lists_.empty()) return false;
  const std::shared_ptr<List> list = lists_.front();
  lock.unlock();
  drain(*list, worker);
  lock.lock();
  if (!lists_.empty() && lists_.front() == list) lists_.pop_front();
  return true;
}

void Crew::help() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return isOver_ || !lists_.empty(); });
    if (isOver_) return;
    isHelping_ = true;
    (void)workOnFirst(lock, 1);
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
