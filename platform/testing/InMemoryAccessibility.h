// Applications that tell what a test wants of their user interface.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/Accessibility.h"

namespace kr::platform::testing {

class InMemoryAccessibility final : public Accessibility {
 public:
  // What the system is able to do.
  bool hasElements = true;
  bool hasObservers = true;
  std::set<std::string> refused;  // names of notifications

  // Every call so far: "application PID", "observe PID", "add NAME", "remove NAME", "end PID".
  std::vector<std::string> calls;

  // Calls the handlers of the observers of the process that have added the notification.
  void send(pid_t pid, const std::string& notification, void* element) {
    for (const Observer* observer : observers_) {
      if (observer->pid == pid && observer->added.contains(notification))
        observer->handler(element, notification);
    }
  }

  std::unique_ptr<AccessibleApplication> application(pid_t pid) override {
    calls.push_back("application " + std::to_string(pid));
    return hasElements && pid != 0 ? std::make_unique<Element>(pid) : nullptr;
  }

  std::unique_ptr<AccessibilityObserver> observe(const AccessibleApplication& application,
                                                 Handler handler) override {
    const pid_t pid = static_cast<const Element&>(application).pid;
    calls.push_back("observe " + std::to_string(pid));
    return hasObservers ? std::make_unique<Observer>(*this, pid, std::move(handler)) : nullptr;
  }

 private:
  struct Element final : AccessibleApplication {
    explicit Element(pid_t process) : pid(process) {}
    pid_t pid;
  };

  struct Observer final : AccessibilityObserver {
    Observer(InMemoryAccessibility& owner, pid_t process, Handler called)
        : service(owner), pid(process), handler(std::move(called)) {
      service.observers_.insert(this);
    }
    ~Observer() override {
      service.observers_.erase(this);
      service.calls.push_back("end " + std::to_string(pid));
    }
    Observer(const Observer&) = delete;
    Observer& operator=(const Observer&) = delete;

    bool add(const std::string& notification) override {
      service.calls.push_back("add " + notification);
      return !service.refused.contains(notification) && added.insert(notification).second;
    }
    void remove(const std::string& notification) override {
      service.calls.push_back("remove " + notification);
      added.erase(notification);
    }

    InMemoryAccessibility& service;
    pid_t pid;
    Handler handler;
    std::set<std::string> added;
  };

  std::set<const Observer*> observers_;
};

}  // namespace kr::platform::testing
