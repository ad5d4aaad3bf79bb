// Shares lists of work between the thread that finds it and a helper. Making files is bound by the kernel's
// work on each, which two cores do side by side; whoever is free takes the next item, so that neither waits
// for the other at the end of a list.
#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace kr::platform::copy {

class Crew {
 public:
  // Workers are numbered from 0; the thread that adds the lists is 0.
  static constexpr int kWorkers = 2;
  using Work = std::function<void(std::size_t index, int worker)>;

  Crew() = default;
  // Waits for the work that is under way; what nobody has begun is not done.
  ~Crew();
  Crew(const Crew&) = delete;
  Crew& operator=(const Crew&) = delete;

  // Has `work` called once for each index below `count`, in any order and from any worker, now or until
  // finish() returns. Works itself while more lists are waiting than a few, so that what they hold stays
  // bounded. `work` does not throw.
  void add(std::size_t count, Work work);

  // Returns when every call of every list has returned.
  void finish();

 private:
  struct List {
    List(std::size_t size, Work call) : count(size), work(std::move(call)) {}

    const std::size_t count;
    const Work work;
    std::atomic<std::size_t> next = 0;
  };

  static void drain(List& list, int worker);
  [[nodiscard]] bool workOnFirst(std::unique_lock<std::mutex>& lock, int worker);
  void help();
  [[nodiscard]] bool haveHelper();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::shared_ptr<List>> lists_;
  bool isHelping_ = false;  // the helper has taken a list
  bool isOver_ = false;
  bool isAlone_ = false;  // no helper could be started
  std::thread helper_;
};

}  // namespace kr::platform::copy
