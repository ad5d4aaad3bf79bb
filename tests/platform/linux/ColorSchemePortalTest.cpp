// A portal of the test's own on a bus of the test's own.
#include "platform/linux/ColorSchemePortal.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <atomic>
#include <cstring>
#include <vector>

#include "platform/posix/FileDescriptor.h"
#include "tests/support/BusObject.h"
#include "tests/support/Desktop.h"
#include "tests/support/Eventually.h"
#include "tests/support/SettingsPortal.h"

namespace kr::platform {
namespace {

using namespace std::chrono_literals;
using kr::testing::Desktop;
using kr::testing::ScopedVariable;
using kr::testing::ScratchFolder;
using kr::testing::SettingsPortal;
using Schemes = std::vector<ColorScheme>;

class Portal : public ::testing::Test {
 protected:
  bool run(const std::function<bool()>& condition, double seconds = 10) {
    return kr::testing::eventually(
        [&] {
          if (const auto ready = portal_.readiness()) {
            pollfd wait{ready->descriptor, static_cast<short>(POLLIN | (ready->write ? POLLOUT : 0)), 0};
            if (::poll(&wait, 1, 5) > 0) portal_.work();
          }
          return condition();
        },
        seconds);
  }

  static double secondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  }

  Desktop desktop_{{.display = false, .bus = true}};
  Schemes told_;
  ColorSchemePortal portal_{[this](ColorScheme scheme) { told_.push_back(scheme); }};
};

TEST_F(Portal, TellsWhatIsChosenAndEveryChangeOfIt) {
  SettingsPortal settings(desktop_.busAddress(), 1);
  portal_.open();
  portal_.await(10s);
  EXPECT_EQ(portal_.scheme(), ColorScheme::dark);
  settings.choose(2);
  ASSERT_TRUE(run([&] { return told_.size() == 2; }));
  settings.choose(0);
  ASSERT_TRUE(run([&] { return told_.size() == 3; }));
  settings.choose(1);
  ASSERT_TRUE(run([&] { return told_.size() == 4; }));
  EXPECT_EQ(told_,
            (Schemes{ColorScheme::dark, ColorScheme::light, ColorScheme::noPreference, ColorScheme::dark}));
}

TEST_F(Portal, TakesNoOtherSettingForIt) {
  SettingsPortal settings(desktop_.busAddress(), 2);
  portal_.open();
  portal_.await(10s);
  settings.change("org.freedesktop.appearance", "contrast", ::g_variant_new_uint32(1));
  settings.change("org.gnome.desktop.interface", "color-scheme", ::g_variant_new_string("prefer-dark"));
  settings.change("org.freedesktop.appearance", "color-scheme", ::g_variant_new_string("dark"));
  settings.choose(7);
  ASSERT_TRUE(run([&] { return told_.size() == 2; }));
  EXPECT_EQ(told_, (Schemes{ColorScheme::light, ColorScheme::noPreference}))
      << "a value that is not known is no preference";
}

TEST_F(Portal, IsHeardAlsoWhenItComesLater) {
  portal_.open();
  EXPECT_LT(secondsOf([&] { portal_.await(10s); }), 5) << "the bus says at once that there is none";
  EXPECT_EQ(portal_.scheme(), ColorScheme::noPreference);
  SettingsPortal settings(desktop_.busAddress(), 1);
  settings.choose(1);
  EXPECT_TRUE(run([&] { return portal_.scheme() == ColorScheme::dark; }));
}

TEST_F(Portal, ThatDoesNotAnswerIsNotWaitedFor) {
  SettingsPortal settings(desktop_.busAddress(), std::nullopt);
  portal_.open();
  EXPECT_LT(secondsOf([&] { portal_.await(100ms); }), 2);
  EXPECT_TRUE(told_.empty());
  settings.choose(1);
  EXPECT_TRUE(run([&] { return portal_.scheme() == ColorScheme::dark; }));
}

TEST_F(Portal, LeavesTheLastChoiceWhenTheBusEnds) {
  SettingsPortal settings(desktop_.busAddress(), 1);
  portal_.open();
  portal_.await(10s);
  desktop_.stopBus();
  EXPECT_TRUE(run([&] { return !portal_.readiness(); }));
  EXPECT_EQ(portal_.scheme(), ColorScheme::dark);
}

TEST_F(Portal, IsNotLookedForWithoutABus) {
  const ScopedVariable none("DBUS_SESSION_BUS_ADDRESS", std::nullopt);
  portal_.open();
  EXPECT_FALSE(portal_.readiness());
  EXPECT_LT(secondsOf([&] { portal_.await(10s); }), 5);
}

// A socket that takes connections and never says anything.
TEST_F(Portal, DoesNotHangOnABusThatIsDead) {
  ScratchFolder folder;
  const std::string path = folder / "bus";
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
  const posix::FileDescriptor server(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  ASSERT_EQ(::bind(server.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(::listen(server.get(), 1), 0);
  const ScopedVariable dead("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + path);
  EXPECT_LT(secondsOf([&] {
              portal_.open();
              portal_.work();
              portal_.await(100ms);
            }),
            2);
  EXPECT_TRUE(told_.empty());
}

}  // namespace
}  // namespace kr::platform
