#include "platform/Accessibility.h"

#include <ApplicationServices/ApplicationServices.h>

#include <utility>

#include "platform/SystemServices.h"
#include "platform/macos/CFOwner.h"
#include "platform/macos/CFText.h"

namespace kr::platform {
namespace {

using macos::CFOwner;

class ApplicationElement final : public AccessibleApplication {
 public:
  ApplicationElement(CFOwner<AXUIElementRef> element, pid_t pid) : element_(std::move(element)), pid_(pid) {}

  [[nodiscard]] AXUIElementRef element() const { return element_.get(); }
  [[nodiscard]] pid_t pid() const { return pid_; }

 private:
  CFOwner<AXUIElementRef> element_;
  pid_t pid_;
};

void notificationHandler(AXObserverRef, AXUIElementRef element, CFStringRef notification, void* handler) {
  (*static_cast<const Accessibility::Handler*>(handler))(const_cast<__AXUIElement*>(element),
                                                         macos::text(notification));
}

class ElementObserver final : public AccessibilityObserver {
 public:
  // Takes part in the main run loop from now on.
  ElementObserver(CFOwner<AXObserverRef> observer, AXUIElementRef element, Accessibility::Handler handler)
      : observer_(std::move(observer)),
        element_(static_cast<AXUIElementRef>(CFRetain(element))),
        handler_(std::move(handler)) {
    CFRunLoopAddSource(CFRunLoopGetMain(), AXObserverGetRunLoopSource(observer_.get()),
                       kCFRunLoopCommonModes);
  }
  ~ElementObserver() override {
    CFRunLoopRemoveSource(CFRunLoopGetMain(), AXObserverGetRunLoopSource(observer_.get()),
                          kCFRunLoopCommonModes);
  }
  ElementObserver(const ElementObserver&) = delete;
  ElementObserver& operator=(const ElementObserver&) = delete;

  bool add(const std::string& notification) override {
    const CFOwner<CFStringRef> name = macos::string(notification);
    return name && AXObserverAddNotification(observer_.get(), element_.get(), name.get(), &handler_) ==
                       kAXErrorSuccess;
  }

  void remove(const std::string& notification) override {
    const CFOwner<CFStringRef> name = macos::string(notification);
    if (name) AXObserverRemoveNotification(observer_.get(), element_.get(), name.get());
  }

 private:
  CFOwner<AXObserverRef> observer_;
  CFOwner<AXUIElementRef> element_;
  Accessibility::Handler handler_;
};

class AXAccessibility final : public Accessibility {
 public:
  std::unique_ptr<AccessibleApplication> application(pid_t pid) override {
    CFOwner<AXUIElementRef> element(AXUIElementCreateApplication(pid));
    return element ? std::make_unique<ApplicationElement>(std::move(element), pid) : nullptr;
  }

  std::unique_ptr<AccessibilityObserver> observe(const AccessibleApplication& application,
                                                 Handler handler) override {
    const auto& watched = static_cast<const ApplicationElement&>(application);
    CFOwner<AXObserverRef> observer;
    if (AXObserverCreate(watched.pid(), notificationHandler, observer.receive()) != kAXErrorSuccess ||
        !observer) {
      return nullptr;
    }
    return std::make_unique<ElementObserver>(std::move(observer), watched.element(), std::move(handler));
  }
};

}  // namespace

Accessibility& systemAccessibility() noexcept {
  static AXAccessibility& accessibility = *new AXAccessibility;
  return accessibility;
}

}  // namespace kr::platform
