#include "tests/support/SettingsPortal.h"

namespace kr::testing {
namespace {

constexpr const char* kPath = "/org/freedesktop/portal/desktop";
constexpr const char* kInterface = "org.freedesktop.portal.Settings";
constexpr const char* kNamespace = "org.freedesktop.appearance";
constexpr const char* kKey = "color-scheme";
constexpr const char* kDescription = R"(<interface name='org.freedesktop.portal.Settings'>
  <method name='Read'>
    <arg type='s' direction='in'/><arg type='s' direction='in'/><arg type='v' direction='out'/>
  </method>
  <signal name='SettingChanged'><arg type='s'/><arg type='s'/><arg type='v'/></signal>
</interface>)";

}  // namespace

SettingsPortal::SettingsPortal(const std::string& busAddress, std::optional<unsigned> scheme)
    : scheme_(scheme ? static_cast<int>(*scheme) : -1),
      object_(busAddress, "org.freedesktop.portal.Desktop", kPath, kDescription,
              [this](const std::string&, GVariant* arguments, GDBusMethodInvocation* call) {
                const char* space = nullptr;
                const char* key = nullptr;
                ::g_variant_get(arguments, "(&s&s)", &space, &key);
                if (std::string(space) != kNamespace || std::string(key) != kKey) {
                  ::g_dbus_method_invocation_return_dbus_error(call, "org.freedesktop.portal.Error.NotFound",
                                                               "no such setting");
                } else if (scheme_ >= 0) {
                  // The value lies in two variants in this answer.
                  GVariant* value = ::g_variant_new_uint32(static_cast<unsigned>(scheme_));
                  ::g_dbus_method_invocation_return_value(
                      call, ::g_variant_new("(v)", ::g_variant_new_variant(value)));
                }
              }) {}

void SettingsPortal::choose(unsigned scheme) {
  scheme_ = static_cast<int>(scheme);
  change(kNamespace, kKey, ::g_variant_new_uint32(scheme));
}

void SettingsPortal::change(const char* space, const char* key, GVariant* value) {
  ::g_dbus_connection_emit_signal(object_.connection(), nullptr, kPath, kInterface, "SettingChanged",
                                  ::g_variant_new("(ssv)", space, key, value), nullptr);
}

}  // namespace kr::testing
