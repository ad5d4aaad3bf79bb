// Shares the items of one list between the calling thread and a helper. Making files is bound by the kernel's
// work on each, which two cores do side by side.
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace kr::platform::copy {

class Crew {
 public:
  // Workers are numbered from 0; the calling thread is 0.
  static constexpr int kWorkers = 2;
  using Work = std::function<void(std::size_t index, int worker)>;

  Crew() = default;
  ~Crew();
  Crew(const Crew&) = delete;
  Crew& operator=(const Crew&) = delete;

  // Calls `work` once for each index below `count`, in any order and from every worker, and returns when the
  // last call has returned. `work` does not throw.
  void run(std::size_t count, const Work& work);

 private:
  void drain(const Work& work, std::size_t count, int worker);
  void help();
  [[nodiscard]] bool haveHelper();

  std::mutex mutex_;
  std::condition_variable changed_;
  const Work* work_ = nullptr;  // none while there is nothing to do
  std::size_t count_ = 0;
  std::atomic<std::size_t> next_ = 0;
  bool isHelping_ = false;  // the helper calls `work_`
  bool isOver_ = false;
  bool isAlone_ = false;  // no helper could be started
  std::thread helper_;
};

}  // namespace kr::platform::copy
