// The desktop's accessibility bus (AT-SPI): which applications are on it, and the events of those that are
// listened to. It has no thread; the main run loop lets it work when something has come. Main thread.
#pragma once

#include <sys/types.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/linux/AccessibleEventNames.h"
#include "platform/linux/RunLoopSource.h"

struct sd_bus;
struct sd_bus_message;
struct sd_bus_slot;

namespace kr::platform {

class AccessibilityBus {
 public:
  // Null where the session has none. One that does not answer is given up after two seconds.
  [[nodiscard]] static std::shared_ptr<AccessibilityBus> open();
  ~AccessibilityBus();
  AccessibilityBus(const AccessibilityBus&) = delete;
  AccessibilityBus& operator=(const AccessibilityBus&) = delete;

  // False once the bus has ended.
  [[nodiscard]] bool isOpen() const { return bus_ != nullptr; }

  // The bus name of the application that runs in the process; none where it takes no part.
  [[nodiscard]] std::optional<std::string> application(pid_t pid);

  // `object` is the bus path of what the event is about; empty where there is none.
  using Listener = std::function<void(const std::string& object, const std::string& event)>;

  // Tells of an application's events of this name until it is destroyed, which has to happen before the bus
  // is.
  class Listening {
   public:
    ~Listening();
    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;

   private:
    friend class AccessibilityBus;
    Listening(AccessibilityBus& bus, std::string name, AccessibleEventName event, Listener listener);
    static int received(sd_bus_message* message, void* listening, void* error);

    AccessibilityBus& bus_;
    std::string name_;
    AccessibleEventName event_;
    Listener listener_;
    sd_bus_slot* slot_ = nullptr;
  };

  // Null where the name is none, or the bus does not take it.
  [[nodiscard]] std::unique_ptr<Listening> listen(const std::string& application, const std::string& name,
                                                  Listener listener);

 private:
  struct CloseBus {
    void operator()(sd_bus* bus) const;
  };
  using Bus = std::unique_ptr<sd_bus, CloseBus>;

  explicit AccessibilityBus(Bus bus);
  [[nodiscard]] static Bus connect(const std::string& address);
  [[nodiscard]] static std::string address();
  [[nodiscard]] bool registerEvent(const std::string& name, const std::string& application);
  void deregisterEvent(const std::string& name);
  // Takes what has come: when the descriptor tells of it, and after every call that waits for its answer,
  // which leaves other messages in memory, where no descriptor tells of them.
  void work();
  void close();

  Bus bus_;
  std::optional<RunLoopSource> source_;
  std::map<std::string, int> registered_;  // how often, by name
};

}  // namespace kr::platform
