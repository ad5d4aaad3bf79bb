#include "platform/linux/DesktopColorScheme.h"

#import <Foundation/Foundation.h>

#include <atomic>
#include <optional>
#include <utility>
#include <vector>

#include "platform/linux/ColorSchemePortal.h"
#include "platform/linux/Patience.h"

namespace kr::platform {
namespace {

std::atomic<ColorScheme> gScheme{ColorScheme::noPreference};

// The connection, and what lets it work. Lives as long as the program. Main thread.
class Watch {
 public:
  static Watch& shared() {
    static auto& watch = *new Watch;
    return watch;
  }

  void awaitFirstAnswer() {
    if (std::exchange(awaited_, true)) return;
    portal_.await(kPatience);
    source_->refresh();
  }

  void add(std::function<void()> changed) { listeners_.push_back(std::move(changed)); }

 private:
  // The run loop has to see the connection open.
  Watch() {
    portal_.open();
    source_.emplace([this] { return portal_.readiness(); }, [this] { portal_.work(); });
  }

  void take(ColorScheme scheme) {
    if (gScheme.exchange(scheme) == scheme) return;
    for (const auto& changed : listeners_) changed();
  }

  bool awaited_ = false;
  std::vector<std::function<void()>> listeners_;
  ColorSchemePortal portal_{[this](ColorScheme scheme) { take(scheme); }};
  std::optional<RunLoopBus> source_;
};

}  // namespace

std::optional<bool> desktopPrefersDark() {
  if ([NSThread isMainThread]) Watch::shared().awaitFirstAnswer();
  const ColorScheme scheme = gScheme;
  if (scheme == ColorScheme::noPreference) return std::nullopt;
  return scheme == ColorScheme::dark;
}

void askDesktopColorScheme() {
  (void)Watch::shared();
}

void onDesktopColorSchemeChange(std::function<void()> changed) {
  Watch::shared().add(std::move(changed));
}

}  // namespace kr::platform
