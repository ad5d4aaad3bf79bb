#include "platform/linux/PolkitAuthority.h"

#include <unistd.h>

#include <climits>
#include <cstdint>

#include "platform/Log.h"
#include "platform/linux/BusConnection.h"
#include "platform/linux/ProcFS.h"

namespace kr::platform {
namespace {

constexpr const char* kBusName = "org.freedesktop.PolicyKit1";
constexpr const char* kObjectPath = "/org/freedesktop/PolicyKit1/Authority";
constexpr const char* kInterface = "org.freedesktop.PolicyKit1.Authority";

// Long enough for the bus to start the authority.
constexpr int kAnswerMilliseconds = 15'000;
constexpr int kNoLimit = INT_MAX;

constexpr std::uint32_t kAllowUserInteraction = 1;

constexpr const char* kGeneralAction = "org.freedesktop.policykit.exec";
constexpr const char* kProgramKey = "org.freedesktop.policykit.exec.path";
constexpr const char* kFirstArgumentKey = "org.freedesktop.policykit.exec.argv1";
// Fields of the description of an action.
constexpr gsize kNameField = 0;
constexpr gsize kAnnotationsField = 9;

// Details of an answer; the keys alone say it.
constexpr const char* kKeepsKey = "polkit.retains_authorization_after_challenge";
constexpr const char* kDismissedKey = "polkit.dismissed";

// The text under a key of a dictionary of texts; none without it.
std::optional<std::string> textIn(GVariant* dictionary, const char* key) {
  const char* text = nullptr;
  if (::g_variant_lookup(dictionary, key, "&s", &text) == FALSE) return std::nullopt;
  return text;
}

// This process, as it cannot be mistaken for another one with the same ID.
GVariant* subject() {
  const pid_t pid = ::getpid();
  const auto status = procfs::status(pid);
  GVariantBuilder details;
  ::g_variant_builder_init(&details, G_VARIANT_TYPE("a{sv}"));
  ::g_variant_builder_add(&details, "{sv}", "pid", ::g_variant_new_uint32(static_cast<std::uint32_t>(pid)));
  ::g_variant_builder_add(&details, "{sv}", "start-time",
                          ::g_variant_new_uint64(status ? status->startTicks : 0));
  ::g_variant_builder_add(&details, "{sv}", "uid",
                          ::g_variant_new_int32(static_cast<std::int32_t>(::getuid())));
  return ::g_variant_new("(sa{sv})", "unix-process", &details);
}

}  // namespace

std::unique_ptr<PolkitAuthority> PolkitAuthority::connect() {
  GError* raw = nullptr;
  const glib::String address(::g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, &raw));
  const glib::Error error(raw);
  glib::Object<GDBusConnection> bus = address ? connectToBus(address.get()) : nullptr;
  if (!bus) {
    log("could not ask for administrator rights: no system bus");
    return nullptr;
  }
  return std::unique_ptr<PolkitAuthority>(new PolkitAuthority(std::move(bus)));
}

glib::Variant PolkitAuthority::call(const char* method, GVariant* arguments, const char* resultType,
                                    int milliseconds) {
  GError* raw = nullptr;
  glib::Variant result(::g_dbus_connection_call_sync(bus_.get(), kBusName, kObjectPath, kInterface, method,
                                                     arguments, G_VARIANT_TYPE(resultType),
                                                     G_DBUS_CALL_FLAGS_NONE, milliseconds, nullptr, &raw));
  const glib::Error error(raw);
  if (error) log("could not ask for administrator rights: %@", error->message);
  return result;
}

std::optional<std::string> PolkitAuthority::actionForProgram(const std::string& path) {
  const glib::Variant result =
      call("EnumerateActions", ::g_variant_new("(s)", ""), "(a(ssssssuuua{ss}))", kAnswerMilliseconds);
  if (!result) return std::nullopt;
  const glib::Variant actions(::g_variant_get_child_value(result.get(), 0));
  for (gsize index = 0; index < ::g_variant_n_children(actions.get()); ++index) {
    const glib::Variant action(::g_variant_get_child_value(actions.get(), index));
    const glib::Variant annotations(::g_variant_get_child_value(action.get(), kAnnotationsField));
    // One that is for a certain first argument is not for the path of any product.
    if (textIn(annotations.get(), kProgramKey) != path || textIn(annotations.get(), kFirstArgumentKey))
      continue;
    const char* name = nullptr;
    ::g_variant_get_child(action.get(), kNameField, "&s", &name);
    return name;
  }
  return kGeneralAction;
}

std::optional<PolkitAuthority::Decision> PolkitAuthority::check(const std::string& action, bool interact) {
  GVariantBuilder noDetails;
  ::g_variant_builder_init(&noDetails, G_VARIANT_TYPE("a{ss}"));
  const glib::Variant result = call("CheckAuthorization",
                                    ::g_variant_new("(@(sa{sv})sa{ss}us)", subject(), action.c_str(),
                                                    &noDetails, interact ? kAllowUserInteraction : 0U, ""),
                                    "((bba{ss}))", interact ? kNoLimit : kAnswerMilliseconds);
  if (!result) return std::nullopt;
  gboolean allowed = FALSE;
  gboolean mayAsk = FALSE;
  GVariant* raw = nullptr;
  ::g_variant_get(result.get(), "((bb@a{ss}))", &allowed, &mayAsk, &raw);
  const glib::Variant details(raw);
  return Decision{.allowed = allowed != FALSE,
                  .mayAsk = mayAsk != FALSE,
                  .keeps = textIn(details.get(), kKeepsKey).has_value(),
                  .dismissed = textIn(details.get(), kDismissedKey).has_value()};
}

}  // namespace kr::platform
