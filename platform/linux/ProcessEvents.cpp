#include "platform/ProcessEvents.h"

#include <sys/eventfd.h>

#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "platform/ProcessTable.h"
#include "platform/SystemServices.h"
#include "platform/WindowOrder.h"
#include "platform/linux/DesktopWatch.h"
#include "platform/linux/ProcFS.h"
#include "platform/linux/ProcessEnds.h"
#include "platform/linux/RunLoopSource.h"
#include "platform/linux/X11Desktop.h"
#include "platform/linux/X11RootWatch.h"
#include "platform/posix/FileDescriptor.h"

namespace kr::platform {
namespace {

// Applications start and come to the front where the window manager says so on the root window; they end
// where the kernel says so. An application that never shows a window is known from the process table, or from
// the program that comes across it.
class DesktopEvents final : public ProcessEvents {
 public:
  void start(Handler handler) override {
    handler_ = std::move(handler);
    learnedSource_.emplace(learned_.get(), [this] { tellLearned(); });
    endsSource_.emplace(ends_.descriptor(), [this] { tellEnded(); });
    DesktopWatch::shared().listen([this](const X11RootWatch::News& news) {
      if (news.windows) tellNewWindows();
      if (news.active) tellFront();
    });
    // After the watch was opened: what starts in between is told twice by the system, and once by us.
    for (const SerialNumber process : systemProcessTable().all()) ends_.watch(process);
    front_ = systemWindowOrder().front();
    isStarted_ = true;
  }

  void learn(SerialNumber process) override {
    if (!ends_.watch(process) || !isStarted_) return;
    ++launches_;
    signalMainThread();
  }

 private:
  void signalMainThread() { static_cast<void>(::eventfd_write(learned_.get(), 1)); }

  void tellLearned() {
    eventfd_t count = 0;
    static_cast<void>(::eventfd_read(learned_.get(), &count));
    tellLaunches();
  }

  void tellLaunches() {
    for (int launched = launches_.exchange(0); launched > 0; --launched) handler_(kApplicationLaunched);
  }

  void tellEnded() {
    // One that was learned of and has ended since was launched first.
    tellLaunches();
    for (std::size_t left = ends_.takeEnded().size(); left > 0; --left) handler_(kApplicationEnded);
  }

  void tellNewWindows() {
    // So that the ID of a process that is watched is its own.
    tellEnded();
    for (const pid_t pid : X11Desktop::shared().windowOwners()) {
      if (ends_.isWatched(pid)) continue;
      const std::optional<SerialNumber> process = procfs::serialNumber(pid);
      if (process && ends_.watch(*process)) handler_(kApplicationLaunched);
    }
  }

  // For a moment between two windows, also of one application, none is active.
  void tellFront() {
    const std::optional<SerialNumber> front = systemWindowOrder().front();
    if (!front || front == front_) return;
    front_ = front;
    handler_(kFrontApplicationChanged);
  }

  Handler handler_;
  std::atomic<bool> isStarted_ = false;
  ProcessEnds ends_;
  std::optional<RunLoopSource> endsSource_;
  posix::FileDescriptor learned_{::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
  std::atomic<int> launches_ = 0;
  std::optional<RunLoopSource> learnedSource_;
  std::optional<SerialNumber> front_;
};

}  // namespace

ProcessEvents& systemProcessEvents() noexcept {
  static DesktopEvents& events = *new DesktopEvents;
  return events;
}

}  // namespace kr::platform
