#include "platform/linux/DesktopWatch.h"

#include <sys/eventfd.h>

#include <utility>

#include "platform/linux/X11Desktop.h"

namespace kr::platform {
namespace {

// A server that ends every connection is not asked again and again.
constexpr std::chrono::seconds kReopenInterval{1};

constexpr X11RootWatch::News kEverything{.windows = true, .active = true, .activeState = true};
// No window is active any more.
constexpr X11RootWatch::News kServerIsLost{.activeState = true};

}  // namespace

DesktopWatch& DesktopWatch::shared() {
  static DesktopWatch& watch = *new DesktopWatch;
  return watch;
}

DesktopWatch::DesktopWatch()
    : signalled_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      signalSource_(signalled_.get(), [this] { takeSignal(); }) {
  X11Desktop::shared().setOpenedHandler([this] { signal(); });
  open();
}

void DesktopWatch::listen(Listener listener) {
  listeners_.push_back(std::move(listener));
}

void DesktopWatch::listenToActiveWindow(Listener listener) {
  listen(std::move(listener));
  followsActiveWindow_ = true;
  hasNewFollower_ = true;
  if (watch_) watch_->followActiveWindow();
  signal();
}

void DesktopWatch::signal() const {
  static_cast<void>(::eventfd_write(signalled_.get(), 1));
}

// Somebody wants to hear of the active window, or another thread has found a server, or the watch has waited
// for replies: they may have brought news along, which the descriptor does not show any more.
void DesktopWatch::takeSignal() {
  eventfd_t count = 0;
  static_cast<void>(::eventfd_read(signalled_.get(), &count));
  if (std::exchange(hasNewFollower_, false)) tell({.activeState = true});
  if (!watch_ || watch_->display() != X11Connection::displayName()) {
    reopen();
  } else {
    takeNews();
  }
}

void DesktopWatch::takeNews() {
  const X11RootWatch::News news = watch_->take();
  if (news.windows || news.active || news.activeState) {
    tell({.windows = news.windows, .active = news.active, .activeState = news.activeState});
  }
  if (!news.lost) return;
  close();
  if (std::chrono::steady_clock::now() - openedAt_ >= kReopenInterval) {
    reopen();
  } else {
    tell(kServerIsLost);
  }
}

// What has changed in between is told now.
void DesktopWatch::reopen() {
  open();
  tell(watch_ ? kEverything : kServerIsLost);
}

void DesktopWatch::open() {
  close();
  openedAt_ = std::chrono::steady_clock::now();
  watch_ = X11RootWatch::open();
  if (!watch_) return;
  if (followsActiveWindow_) watch_->followActiveWindow();
  watchSource_.emplace(watch_->descriptor(), [this] { takeNews(); });
  signal();
}

void DesktopWatch::close() {
  watchSource_.reset();
  watch_.reset();
}

// A listener may bring another one.
void DesktopWatch::tell(const X11RootWatch::News& news) {
  for (std::size_t index = 0; index < listeners_.size(); ++index) {
    const Listener listener = listeners_[index];
    listener(news);
  }
}

}  // namespace kr::platform
