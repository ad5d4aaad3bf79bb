// The window without a mouse, and what the window manager is told of it.
#include <sys/stat.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>

#include "platform/linux/X11Connection.h"
#include "platform/posix/Files.h"
#include "tests/end-to-end/Installation.h"
#include "tests/support/Eventually.h"

namespace kr::testing {
namespace {

class Keyboard : public Installation {
 protected:
  void open(const Lines& more = {}) {
    openSmall(destination_, more);
    awaitFocus();
  }

  // The documentation is opened with a program that leaves a note.
  void openWithDocumentation() {
    const std::string program =
        scratch_.file("reader", "#!/bin/sh\nprintf '%s\\n' \"$1\" > '" + opened_ + "'\n");
    ::chmod(program.c_str(), 0755);
    scratch_.file("data/applications/reader.desktop",
                  "[Desktop Entry]\nType=Application\nName=Reader\nExec=" + program +
                      " %f\nMimeType=text/plain;application/octet-stream;\n");
    scratch_.file("data/applications/mimeapps.list",
                  "[Default Applications]\ntext/plain=reader.desktop\n"
                  "application/octet-stream=reader.desktop\n");
    open({"-documentationPath", scratch_.file("Manual.txt", "words")});
  }

  // The window manager gives a new window the focus; keys that come before are lost.
  void awaitFocus() {
    ASSERT_TRUE(eventually(
        [] { return std::system("test -n \"$(xdotool getactivewindow getwindowfocus 2>/dev/null)\"") == 0; },
        20));
    std::string before;
    // Nothing changes in the window any more once it is drawn.
    ASSERT_TRUE(eventually(
        [&] {
          const std::string now = picture();
          const bool same = !now.empty() && now == before;
          before = now;
          return same;
        },
        20));
  }

  // Holds a key down while another is pressed.
  static void typeWith(const std::string& held, const std::string& key) {
    (void)std::system(("timeout 5 xdotool keydown " + held + " sleep 0.1 keydown " + key +
                       " sleep 0.1 keyup " + key + " sleep 0.1 keyup " + held)
                          .c_str());
  }

  // Keys one after the other, the focus to be seen after each Tab.
  void tab(int times) {
    for (int time = 0; time < times; ++time) {
      const std::string before = picture();
      type("Tab");
      // The focus shows on every control but the default button.
      (void)eventually([&] { return picture() != before; }, 1);
    }
  }

  void expectDocumentationIsOpened() {
    EXPECT_TRUE(eventually([&] { return files::exists(opened_); }));
    EXPECT_EQ(files::contents(opened_).value_or(""), scratch_ / "Manual.txt\n");
    EXPECT_FALSE(logHas("Install"));
  }

  const std::string destination_ = scratch_.folder("Applications") + "/Small.app";

 private:
  const std::string opened_ = scratch_ / "opened";
  ScopedVariable data_{"XDG_DATA_HOME", scratch_ / "data"};
};

TEST_F(Keyboard, ReturnInstallsAndEndsAtTheEnd) {
  open();
  type("Return");
  expectInstalled(destination_);
  expectQuitsOnOK();
}

TEST_F(Keyboard, TabReachesCancelAndSpacePressesIt) {
  openWithDocumentation();
  tab(1);
  type("space");
  (void)expectEnds(10);
  EXPECT_FALSE(logHas("Install"));
}

TEST_F(Keyboard, TabReachesTheDocumentation) {
  openWithDocumentation();
  tab(2);
  type("space");
  expectDocumentationIsOpened();
}

TEST_F(Keyboard, TabComesRoundToInstall) {
  openWithDocumentation();
  tab(3);
  type("space");
  expectLine("Install");
}

TEST_F(Keyboard, TabPassesOverWhatIsHidden) {
  open();
  tab(2);
  type("space");
  expectLine("Install");
}

TEST_F(Keyboard, ShiftTabGoesTheOtherWay) {
  openWithDocumentation();
  typeWith("shift", "Tab");
  type("space");
  expectDocumentationIsOpened();
}

TEST_F(Keyboard, EscapeCancels) {
  open();
  type("Escape");
  (void)expectEnds(10);
  EXPECT_FALSE(logHas("Install"));
}

TEST_F(Keyboard, ReturnAndEscapeTurnThePages) {
  open({"-readMePath", scratch_.file("readme.txt", "words")});
  const std::string readMe = picture();
  type("Return");
  EXPECT_TRUE(eventually([&] { return picture() != readMe; })) << "Continue";
  EXPECT_FALSE(logHas("Install"));
  type("Escape");
  EXPECT_TRUE(eventually([&] { return picture() == readMe; })) << "Go Back";
  type("Escape");
  (void)expectEnds(10);
}

TEST_F(Keyboard, TheReadMeCanBeScrolled) {
  std::string words;
  for (int line = 0; line < 200; ++line) words += "line " + std::to_string(line) + "\n";
  open({"-readMePath", scratch_.file("readme.txt", words)});
  tab(2);
  const std::string top = picture();
  type("Next");
  EXPECT_TRUE(eventually([&] { return picture() != top; })) << "Page Down";
  type("Return");
  EXPECT_TRUE(eventually([&] { return picture() != top; }));
  type("Escape");
  EXPECT_FALSE(ends(1)) << "Return has turned the page, and Escape turns it back";
  type("Escape");
  (void)expectEnds(10);
}

TEST_F(Keyboard, OptionReturnInstallsWithAdministratorRights) {
  open();
  typeWith("Alt_L", "Return");
  expectLine("enforcing authorization");
}

TEST_F(Keyboard, TheWindowManagerKnowsTitleClassAndIcon) {
  open({"-productName", "Small"});
  const auto session = platform::X11Session::open();
  ASSERT_TRUE(session);
  const auto window = static_cast<xcb_window_t>(std::stoul(windows().at(0)));
  const auto property = [&](const char* name) {
    const auto atomCookie =
        ::xcb_intern_atom(session->connection(), 1, static_cast<std::uint16_t>(std::strlen(name)), name);
    const platform::X11Reply<xcb_intern_atom_reply_t> atom(
        ::xcb_intern_atom_reply(session->connection(), atomCookie, nullptr));
    const auto cookie = ::xcb_get_property(session->connection(), 0, window,
                                           atom ? atom->atom : XCB_ATOM_NONE, XCB_ATOM_ANY, 0, 1U << 20);
    const platform::X11Reply<xcb_get_property_reply_t> value(
        ::xcb_get_property_reply(session->connection(), cookie, nullptr));
    if (!value) return std::string();
    return std::string(static_cast<const char*>(::xcb_get_property_value(value.get())),
                       static_cast<std::size_t>(::xcb_get_property_value_length(value.get())));
  };
  EXPECT_EQ(property("_NET_WM_NAME"), "Install Small");
  using namespace std::string_literals;
  EXPECT_EQ(property("WM_CLASS"), "VelmoraInstaller\0GNUstep\0"s);
  const std::string icon = property("_NET_WM_ICON");
  ASSERT_GE(icon.size(), 8U);
  std::uint32_t size[2] = {};
  std::memcpy(size, icon.data(), sizeof size);
  EXPECT_GE(size[0], 32U);
  EXPECT_EQ(icon.size(), (2 + static_cast<std::size_t>(size[0]) * size[1]) * 4);
  EXPECT_NE(icon.find_first_not_of('\0', 8), std::string::npos) << "it shows nothing";
}

}  // namespace
}  // namespace kr::testing
