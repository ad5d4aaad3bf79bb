// The desktop's choice of light or dark, from the settings of its portal on the session bus
// (org.freedesktop.portal.Settings, "org.freedesktop.appearance" "color-scheme"): what it is, and every
// change of it. It has no thread: whoever runs it waits until the descriptor is ready and then lets it work.
// Nothing waits for a bus or a portal that does not answer, but await(). One thread.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "platform/linux/RunLoopBus.h"

struct sd_bus;
struct sd_bus_message;

namespace kr::platform {

enum class ColorScheme { noPreference, dark, light };

class ColorSchemePortal {
 public:
  // Told of the first answer and of every change after it. Must not throw, nor destroy the portal.
  using Changed = std::function<void(ColorScheme scheme)>;

  explicit ColorSchemePortal(Changed changed);
  ~ColorSchemePortal();
  ColorSchemePortal(const ColorSchemePortal&) = delete;
  ColorSchemePortal& operator=(const ColorSchemePortal&) = delete;

  // Begins to connect and to ask. Without a bus nothing will ever be told.
  void open() noexcept;

  // What to wait for; none without a bus, or once it has ended.
  [[nodiscard]] std::optional<BusReadiness> readiness() const noexcept;

  // Takes what has come.
  void work() noexcept;

  // Works until the first question is answered, or the time is up, or it is clear that no answer will come.
  void await(std::chrono::milliseconds atMost) noexcept;

  // What was told last; no preference before.
  [[nodiscard]] ColorScheme scheme() const { return scheme_; }

 private:
  struct CloseBus {
    void operator()(sd_bus* bus) const;
  };

  void tell(std::uint32_t value);
  static int answered(sd_bus_message* message, void* portal, void* error);
  static int changed(sd_bus_message* message, void* portal, void* error);

  Changed changed_;
  ColorScheme scheme_ = ColorScheme::noPreference;
  bool asking_ = false;
  std::unique_ptr<sd_bus, CloseBus> bus_;
};

}  // namespace kr::platform
