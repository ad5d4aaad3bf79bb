#include "tests/support/PolkitAgent.h"

#include <unistd.h>

#include <cstdint>
#include <stdexcept>

#include "platform/linux/ProcFS.h"
#include "tests/support/BusObject.h"

namespace kr::testing {
namespace {

constexpr const char* kAuthorityName = "org.freedesktop.PolicyKit1";
constexpr const char* kAuthorityPath = "/org/freedesktop/PolicyKit1/Authority";
constexpr const char* kAuthorityInterface = "org.freedesktop.PolicyKit1.Authority";
constexpr const char* kPath = "/com/velmora/test/Agent";
constexpr const char* kInterface =
    "<interface name='org.freedesktop.PolicyKit1.AuthenticationAgent'>"
    "<method name='BeginAuthentication'><arg type='s' direction='in'/><arg type='s' direction='in'/>"
    "<arg type='s' direction='in'/><arg type='a{ss}' direction='in'/><arg type='s' direction='in'/>"
    "<arg type='a(sa{sv})' direction='in'/></method>"
    "<method name='CancelAuthentication'><arg type='s' direction='in'/></method></interface>";

GVariant* identity(std::uint32_t user) {
  GVariantBuilder details;
  ::g_variant_builder_init(&details, G_VARIANT_TYPE("a{sv}"));
  ::g_variant_builder_add(&details, "{sv}", "uid", ::g_variant_new_uint32(user));
  return ::g_variant_new("(sa{sv})", "unix-user", &details);
}

GVariant* subject(pid_t process) {
  const auto status = platform::procfs::status(process);
  if (!status) throw std::runtime_error("no such process");
  GVariantBuilder details;
  ::g_variant_builder_init(&details, G_VARIANT_TYPE("a{sv}"));
  ::g_variant_builder_add(&details, "{sv}", "pid",
                          ::g_variant_new_uint32(static_cast<std::uint32_t>(process)));
  ::g_variant_builder_add(&details, "{sv}", "start-time", ::g_variant_new_uint64(status->startTicks));
  return ::g_variant_new("(sa{sv})", "unix-process", &details);
}

}  // namespace

PolkitAgent::PolkitAgent(pid_t process, User user, const char* locale) {
  const glib::String address(::g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
  object_ = std::make_unique<BusObject>(
      address.get(), "", kPath, kInterface,
      [this, user](const std::string& method, GVariant* arguments, GDBusMethodInvocation* invocation) {
        if (method == "BeginAuthentication") {
          const char* action = nullptr;
          const char* message = nullptr;
          const char* cookie = nullptr;
          ::g_variant_get_child(arguments, 0, "&s", &action);
          ::g_variant_get_child(arguments, 1, "&s", &message);
          ::g_variant_get_child(arguments, 4, "&s", &cookie);
          {
            const std::lock_guard lock(mutex_);
            asked_.push_back(std::string(action) + ": " + message);
          }
          if (user == User::hesitates) {
            unanswered_.reset(invocation, g_object_unref);
            return;
          }
          if (user == User::dismisses) {
            ::g_dbus_method_invocation_return_dbus_error(
                invocation, "org.freedesktop.PolicyKit1.Error.Cancelled", "dismissed");
            return;
          }
          if (user == User::confirms) {
            (void)object_->call(kAuthorityName, kAuthorityPath, kAuthorityInterface,
                                "AuthenticationAgentResponse2",
                                ::g_variant_new("(us@(sa{sv}))", static_cast<std::uint32_t>(::getuid()),
                                                cookie, identity(0)));
          }
        }
        ::g_dbus_method_invocation_return_value(invocation, nullptr);
      });
  if (!object_->call(kAuthorityName, kAuthorityPath, kAuthorityInterface, "RegisterAuthenticationAgent",
                     ::g_variant_new("(@(sa{sv})ss)", subject(process), locale, kPath))) {
    throw std::runtime_error("the authority does not take the agent");
  }
}

PolkitAgent::~PolkitAgent() = default;

std::vector<std::string> PolkitAgent::asked() const {
  const std::lock_guard lock(mutex_);
  return asked_;
}

}  // namespace kr::testing
