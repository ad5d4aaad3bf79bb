#import "library/utilities/KRUtilities.h"

#include <sys/stat.h>
#include <unistd.h>

#import "library/process/KRProcess.h"
#import "platform/cocoa/Bridging.h"
#import "tests/library/utilities/UtilitiesFixture.h"
#include "tests/support/ScratchFolder.h"

namespace kr::testing {
namespace {

class OtherPrograms : public UtilitiesFixture {
 protected:
  // A script that does not start leaves its file.
  ~OtherPrograms() override {
    const std::string start = "script-output-" + std::to_string(::getpid()) + "-";
    for (NSString* name in [[NSFileManager defaultManager] contentsOfDirectoryAtPath:@"/tmp" error:nullptr]) {
      if (toBytes(name).starts_with(start)) ::unlink(("/tmp/" + toBytes(name)).c_str());
    }
  }

  [[nodiscard]] NSString* script(const std::string& text) const {
    const std::string path = folder.file("script", "#!/bin/sh\n" + text);
    ::chmod(path.c_str(), 0755);
    return toNSString(path);
  }

  static std::string raisedBy(void (^action)(void)) {
    @try {
      action();
    } @catch (NSException* exception) {
      return toBytes([exception name]);
    }
    return "";
  }

  ScratchFolder folder;
};

TEST_F(OtherPrograms, AreScriptsWithTheirParameters) {
  NSString* path = script("echo $# \"$@\"");
  EXPECT_EQ(toBytes([KRUtilities runShellScript:path withParameters:nil timeout:60]), "0\n");
  EXPECT_EQ(toBytes([KRUtilities runShellScript:path withParameters:@[] timeout:60]), "0\n");
  NSArray* parameters = @[ @"a b", @"c" ];
  EXPECT_EQ(toBytes([KRUtilities runShellScript:path withParameters:parameters timeout:60]), "2 a b c\n");
}

TEST_F(OtherPrograms, ThatTakeTooLongAreLoggedWithTheirParametersAsTheArrayShowsThem) {
  NSArray* parameters = @[ @"a b", @"c" ];
  EXPECT_EQ(toBytes([KRUtilities runShellScript:script("sleep 60") withParameters:parameters timeout:0]), "");
  const std::string shown = toBytes([parameters description]);
  EXPECT_EQ(log_.lines().back(), platform::singleLine("script timeout: script " + shown));
}

TEST_F(OtherPrograms, ThatAreNotThereSaySo) {
  NSString* text = [KRUtilities runShellScript:@"/no/such/script" withParameters:nil timeout:60];
  EXPECT_EQ(toBytes(text),
            "script script failed: could not start /no/such/script: No such file or directory");
  EXPECT_TRUE(toBytes([KRUtilities runShellScript:nil withParameters:nil timeout:60]).starts_with("script "));
  EXPECT_EQ([KRUtilities runShellScript:script("printf '\\377'") withParameters:nil timeout:60], nil);
}

TEST_F(OtherPrograms, WithAParameterThatIsNoStringAreNotStarted) {
  NSArray* parameters = @[ @"a", @7, @"c" ];
  NSString* text = [KRUtilities runShellScript:script("echo run") withParameters:parameters timeout:60];
  EXPECT_EQ(toBytes(text), "script script failed: a parameter is no string");
}

TEST_F(OtherPrograms, AreCommandLinesOfTheShell) {
  EXPECT_EQ(toBytes([KRUtilities shellCommandResult:@"echo a | tr a b"]), "b\n");
  EXPECT_EQ([KRUtilities shellCommandResult:@"printf '\\377'"], nil);
  EXPECT_EQ(toBytes([KRUtilities shellCommandResult:[NSNumber numberWithInt:7]]), "")
      << "whatever describes itself; there is no command 7";
}

TEST_F(OtherPrograms, OpenDocumentsInTheBackground) {
  [KRUtilities openFile:@"/Documents/Manual.txt"];
  [KRUtilities openFile:@"~/Manual.txt"];
  EXPECT_EQ(applications_.calls(),
            (Lines{"openInBackground /Documents/Manual.txt", "openInBackground ~/Manual.txt"}));
}

TEST_F(OtherPrograms, OpenNothingWithoutAPath) {
  EXPECT_EQ(raisedBy(^{
              [KRUtilities openFile:nil];
            }),
            "NSInvalidArgumentException");
  EXPECT_EQ(applications_.calls(), Lines{});
}

TEST_F(OtherPrograms, KeepTheKeyboardToThemselves) {
  const auto mailer = processes_.add({.pid = 100, .name = "Mailer"});
  const auto terminal = processes_.add({.pid = 101, .name = "Terminal"});
  secureInput_.text = "\"kCGSSessionSecureInputPID\"=101,\"kCGSSessionSecureInputPID\"=5,"
                      "\"kCGSSessionSecureInputPID\"=100,\"kCGSSessionSecureInputPID\"=101";
  NSArray* processes = [KRUtilities secureInputProcesses];
  ASSERT_EQ([processes count], 2U);
  EXPECT_TRUE([[processes objectAtIndex:0] isSameProcess:terminal]);
  EXPECT_TRUE([[processes objectAtIndex:1] isSameProcess:mailer]);
}

TEST_F(OtherPrograms, ThatKeepTheKeyboardAreNoneWhereNobodyIsNamed) {
  EXPECT_EQ([KRUtilities secureInputProcesses], nil);
  secureInput_.text = "";
  EXPECT_EQ([KRUtilities secureInputProcesses], nil);
  secureInput_.text = "\"kCGSSessionSecureInputPID\"=5";
  EXPECT_EQ([KRUtilities secureInputProcesses], nil) << "it has ended meanwhile";
}

}  // namespace
}  // namespace kr::testing
