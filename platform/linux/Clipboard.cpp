#include "platform/Clipboard.h"

#include <chrono>
#include <memory>

#include "platform/SystemServices.h"
#include "platform/linux/X11SelectionWatch.h"

namespace kr::platform {
namespace {

// A server that did not answer is not asked again for a while, unless DISPLAY names another one.
constexpr std::chrono::seconds kRetryInterval{1};

// The toolkit's pasteboard hears of what other programs put there only while it owns the selection itself.
class SelectionClipboard final : public Clipboard {
 public:
  long changeCount() override {
    if (watch_ && watch_->display() != X11Connection::displayName()) watch_.reset();
    if (!watch_) open();
    if (!watch_) return count_;
    if (const std::optional<long> changes = watch_->takeChanges()) {
      count_ += *changes;
    } else {
      watch_.reset();
      open();
    }
    return count_;
  }

 private:
  void open() {
    const std::string wanted = X11Connection::displayName();
    const auto now = std::chrono::steady_clock::now();
    if (wanted == display_ && now < nextAttempt_) return;
    display_ = wanted;
    watch_ = X11SelectionWatch::open();
    nextAttempt_ = watch_ ? now : now + kRetryInterval;
  }

  long count_ = 0;
  std::unique_ptr<X11SelectionWatch> watch_;
  std::string display_;
  std::chrono::steady_clock::time_point nextAttempt_;
};

}  // namespace

Clipboard& systemClipboard() noexcept {
  static SelectionClipboard& clipboard = *new SelectionClipboard;
  return clipboard;
}

}  // namespace kr::platform
