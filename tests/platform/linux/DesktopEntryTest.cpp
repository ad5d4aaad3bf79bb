#include "platform/linux/DesktopEntry.h"

#include <gio/gdesktopappinfo.h>
#include <gtest/gtest.h>

#include "platform/linux/GLibOwner.h"
#include "tests/support/ScratchFolder.h"

namespace kr::platform {
namespace {

// GLib reads the folders of the environment once, so each case (a process of its own) sets them first.
class DesktopEntry : public ::testing::Test {
 protected:
  DesktopEntry() { ::setenv("XDG_DATA_HOME", scratch_.path().c_str(), 1); }

  std::string entryFile() { return scratch_ / "applications/com.example.p.desktop"; }

  kr::testing::ScratchFolder scratch_;
};

TEST_F(DesktopEntry, TheDesktopReadsBackWhatWasRegistered) {
  const std::string program = scratch_.file("My $100 \"P`\\.app/P");
  ASSERT_EQ(::chmod(program.c_str(), 0755), 0);
  ASSERT_FALSE(registerEntry({"com.example.p", "Grüße; P", program, "/icons/p.png"}));
  const glib::Object<GDesktopAppInfo> entry(g_desktop_app_info_new_from_filename(entryFile().c_str()));
  ASSERT_TRUE(entry);
  EXPECT_STREQ(g_app_info_get_name(G_APP_INFO(entry.get())), "Grüße; P");
  char** words = nullptr;
  ASSERT_TRUE(
      g_shell_parse_argv(g_app_info_get_commandline(G_APP_INFO(entry.get())), nullptr, &words, nullptr));
  const glib::Strings owner(words);
  EXPECT_EQ(words[0], program);
  EXPECT_EQ(words[1], nullptr);
}

TEST_F(DesktopEntry, APercentSignIsDoubledBecauseASingleOneBeginsAFieldCode) {
  EXPECT_EQ(quotedForExec("/100%/P"), "\"/100%%/P\"");
}

TEST_F(DesktopEntry, ALaterRegistrationReplacesTheEarlier) {
  ASSERT_FALSE(registerEntry({"com.example.p", "Old", "/old/P", ""}));
  ASSERT_FALSE(registerEntry({"com.example.p", "New", "/new/P", ""}));
  const std::string text = kr::testing::readFile(entryFile());
  EXPECT_NE(text.find("Name=New"), std::string::npos);
  EXPECT_EQ(text.find("/old/P"), std::string::npos);
}

TEST_F(DesktopEntry, AnIdentifierCannotLeaveTheFolder) {
  ASSERT_FALSE(registerEntry({"../../escape", "P", "/P", ""}));
  EXPECT_NE(kr::testing::readFile(scratch_ / "applications/.._.._escape.desktop").find("Name=P"),
            std::string::npos);
}

TEST_F(DesktopEntry, APathThatIsNotUTF8CannotBeRegistered) {
  EXPECT_EQ(registerEntry({"com.example.p", "P", "/P\xFF/P", ""}), std::errc::illegal_byte_sequence);
}

TEST_F(DesktopEntry, AFolderThatCannotBeWrittenIsAnError) {
  scratch_.file("applications", "a file in place of the folder");
  EXPECT_TRUE(registerEntry({"com.example.p", "P", "/P", ""}));
}

}  // namespace
}  // namespace kr::platform
