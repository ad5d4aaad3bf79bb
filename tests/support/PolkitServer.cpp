#include "tests/support/PolkitServer.h"

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "platform/linux/BusConnection.h"
#include "tests/support/Eventually.h"

namespace kr::testing {
namespace {

// Where the bus and polkit look, and pkexec with them, whatever its caller's environment says.
constexpr const char* kBusFolder = "/run/dbus";
constexpr const char* kActions = "/usr/share/polkit-1/actions";
constexpr const char* kRules = "/etc/polkit-1/rules.d";
constexpr const char* kPackagedRules = "/usr/share/polkit-1/rules.d";
constexpr const char* kAuthority = "/usr/lib/polkit-1/polkitd";
constexpr const char* kOwnPolicy = "/org.freedesktop.policykit.policy";
constexpr const char* kAddress = "unix:path=/run/dbus/system_bus_socket";

constexpr std::string_view kBusConfiguration = R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN" "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=/run/dbus/system_bus_socket</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/>
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

void check(int result, const std::string& what) {
  if (result != 0) throw std::runtime_error(what + ": " + std::generic_category().message(errno));
}

void replace(const std::string& folder, const char* place) {
  check(::mount(folder.c_str(), place, nullptr, MS_BIND, nullptr), std::string("mount over ") + place);
}

// Only the file system of the test's own processes changes.
void leaveTheMachinesView() {
  check(::unshare(CLONE_NEWNS), "unshare");
  check(::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr), "make mounts private");
}

bool answers() {
  const auto bus = platform::connectToBus(kAddress);
  if (!bus) return false;
  const glib::Variant owner(::g_dbus_connection_call_sync(
      bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetNameOwner",
      ::g_variant_new("(s)", "org.freedesktop.PolicyKit1"), nullptr, G_DBUS_CALL_FLAGS_NONE, 2000, nullptr,
      nullptr));
  return owner != nullptr;
}

}  // namespace

PolkitServer::PolkitServer(const std::string& rules, const std::string& policy)
    : systemBus_("DBUS_SYSTEM_BUS_ADDRESS", kAddress) {
  // The authority gives up the rights of root and reads its files as an ordinary user.
  ::chmod(folder_.path().c_str(), 0755);
  leaveTheMachinesView();
  const std::string actions = folder_.folder("actions");
  std::filesystem::copy_file(std::string(kActions) + kOwnPolicy, actions + kOwnPolicy);
  if (!policy.empty()) std::filesystem::copy_file(policy, actions + "/test.policy");
  folder_.file("rules/10-test.rules", rules);
  std::filesystem::create_directories(kBusFolder);
  replace(folder_.folder("bus"), kBusFolder);
  replace(actions, kActions);
  replace(folder_ / "rules", kRules);
  replace(folder_.folder("packaged"), kPackagedRules);

  bus_ = Child({"dbus-daemon", "--nofork", "--nopidfile",
                "--config-file=" + folder_.file("bus.conf", kBusConfiguration)});
  if (!eventually([] { return platform::connectToBus(kAddress) != nullptr; }, 20)) {
    throw std::runtime_error("dbus-daemon did not start");
  }
  authority_ = Child({kAuthority, "--no-debug"});
  if (!eventually(answers, 20)) throw std::runtime_error("polkitd did not start");
}

}  // namespace kr::testing
