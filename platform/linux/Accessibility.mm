#include "platform/Accessibility.h"

#import <Foundation/Foundation.h>

#include <map>
#include <utility>

#include "platform/SystemServices.h"
#import "platform/cocoa/Bridging.h"
#include "platform/linux/AccessibilityBus.h"
#include "platform/linux/ProcessHandle.h"

namespace kr::platform {
namespace {

class ProcessElement final : public AccessibleApplication {
 public:
  explicit ProcessElement(pid_t pid) : pid_(pid) {}
  [[nodiscard]] pid_t pid() const { return pid_; }

 private:
  pid_t pid_;
};

// An element is the bus name of its application followed by its path on the bus, in one string:
// ":1.7/org/...".
class BusObserver final : public AccessibilityObserver {
 public:
  BusObserver(std::shared_ptr<AccessibilityBus> bus, std::string application, Accessibility::Handler handler)
      : bus_(std::move(bus)), application_(std::move(application)), handler_(std::move(handler)) {}

  bool add(const std::string& notification) override {
    if (listening_.contains(notification)) return false;
    auto listening =
        bus_->listen(application_, notification, [this](const std::string& object, const std::string& event) {
          handler_(object.empty() ? nil : toNSString(application_ + object), event);
        });
    if (!listening) return false;
    listening_.emplace(notification, std::move(listening));
    return true;
  }

  void remove(const std::string& notification) override { listening_.erase(notification); }

 private:
  // The listening ends before the bus.
  std::shared_ptr<AccessibilityBus> bus_;
  std::string application_;
  Accessibility::Handler handler_;
  std::map<std::string, std::unique_ptr<AccessibilityBus::Listening>> listening_;
};

class BusAccessibility final : public Accessibility {
 public:
  std::unique_ptr<AccessibleApplication> application(pid_t pid) override {
    if (!ProcessHandle::open(pid)) return nullptr;
    return std::make_unique<ProcessElement>(pid);
  }

  std::unique_ptr<AccessibilityObserver> observe(const AccessibleApplication& application,
                                                 Handler handler) override {
    std::shared_ptr<AccessibilityBus> bus = bus_.lock();
    if (!bus || !bus->isOpen()) bus = AccessibilityBus::open();
    if (!bus) return nullptr;
    bus_ = bus;
    const std::optional<std::string> name =
        bus->application(static_cast<const ProcessElement&>(application).pid());
    if (!name) return nullptr;
    return std::make_unique<BusObserver>(std::move(bus), *name, std::move(handler));
  }

 private:
  // Kept by the observers: while nobody observes, there is no connection.
  std::weak_ptr<AccessibilityBus> bus_;
};

}  // namespace

Accessibility& systemAccessibility() noexcept {
  static BusAccessibility& accessibility = *new BusAccessibility;
  return accessibility;
}

}  // namespace kr::platform
