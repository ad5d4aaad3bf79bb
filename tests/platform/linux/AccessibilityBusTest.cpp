#include "platform/linux/AccessibilityBus.h"

#include <gtest/gtest.h>

#include "platform/linux/BusConnection.h"
#include "tests/support/Desktop.h"

namespace kr::platform {
namespace {

using kr::testing::Desktop;

// An application that takes part, as far as the registry of the bus knows.
class RegisteredEvents : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(bus_);
    const glib::Object<GDBusConnection> session = connectToBus(desktop_.busAddress());
    const glib::Variant address =
        call(session.get(), "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", "(s)");
    ASSERT_TRUE(address);
    const char* text = nullptr;
    ::g_variant_get(address.get(), "(&s)", &text);
    application_ = connectToBus(text);
    ASSERT_TRUE(application_);
  }

  [[nodiscard]] std::string name() const { return ::g_dbus_connection_get_unique_name(application_.get()); }

  // How many names of events the application is asked to tell of.
  [[nodiscard]] std::size_t count() const {
    const glib::Variant events =
        call(application_.get(), "org.a11y.atspi.Registry", "/org/a11y/atspi/registry",
             "org.a11y.atspi.Registry", "GetRegisteredEvents", "(a(ss))");
    if (!events) return 99;
    const glib::Variant list(::g_variant_get_child_value(events.get(), 0));
    return ::g_variant_n_children(list.get());
  }

  Desktop desktop_{{.display = false, .bus = true, .accessibility = true}};
  std::shared_ptr<AccessibilityBus> bus_ = AccessibilityBus::open();

 private:
  static glib::Variant call(GDBusConnection* bus, const char* destination, const char* path,
                            const char* interface, const char* method, const char* type) {
    return glib::Variant(::g_dbus_connection_call_sync(bus, destination, path, interface, method, nullptr,
                                                       G_VARIANT_TYPE(type), G_DBUS_CALL_FLAGS_NONE, 5000,
                                                       nullptr, nullptr));
  }

  glib::Object<GDBusConnection> application_;
};

TEST_F(RegisteredEvents, AreTakenBackWithTheLastWhoListens) {
  EXPECT_EQ(count(), 0U);
  auto one = bus_->listen(name(), "window:create", {});
  auto two = bus_->listen(name(), "window:create", {});
  ASSERT_TRUE(one && two);
  EXPECT_GE(count(), 1U);
  one.reset();
  EXPECT_GE(count(), 1U);
  two.reset();
  EXPECT_EQ(count(), 0U);
}

TEST_F(RegisteredEvents, OfANameThatIsNoneAreNone) {
  EXPECT_FALSE(bus_->listen(name(), "AXWindowCreated", {}));
  EXPECT_EQ(count(), 0U);
}

}  // namespace
}  // namespace kr::platform
