// An object on a message bus that answers calls, on a thread of its own.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "platform/linux/GLibOwner.h"

namespace kr::testing {

class BusObject {
 public:
  // Answers the call of a method in the end, or never. On the object's thread.
  using Handler =
      std::function<void(const std::string& method, GVariant* arguments, GDBusMethodInvocation* call)>;

  // Connects to the bus, takes the name there unless it is empty, and answers calls at the path as soon as
  // this returns. `interface` is the description of one interface ("<interface name='...'>..."). Throws
  // std::runtime_error where the bus does not do so.
  BusObject(const std::string& address, const std::string& name, const std::string& path,
            const std::string& interface, Handler handler);
  ~BusObject();
  BusObject(const BusObject&) = delete;
  BusObject& operator=(const BusObject&) = delete;

  [[nodiscard]] GDBusConnection* connection() const { return connection_.get(); }

  // Calls a method of another object on the bus and waits for its answer, which is null after an error.
  glib::Variant call(const std::string& name, const std::string& path, const std::string& interface,
                     const std::string& method, GVariant* arguments) const;

 private:
  static void called(GDBusConnection*, const char*, const char*, const char*, const char* method,
                     GVariant* arguments, GDBusMethodInvocation* invocation, gpointer data);

  Handler handler_;
  GMainContext* context_;
  GMainLoop* loop_;
  glib::Object<GDBusConnection> connection_;
  std::thread thread_;
};

}  // namespace kr::testing
