#import <AppKit/AppKit.h>

#import "tests/library/process/ProcessFixture.h"
#include "tests/support/ScratchFolder.h"

namespace kr {
namespace {

using platform::testing::InMemoryProcess;
using platform::testing::propertyListText;
using testing::Lines;
using testing::ProcessFixture;
using testing::ScratchFolder;

// A property list whose root is a dictionary of this text.
std::string dictionaryText(const std::string& entries) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>" + entries +
         "</dict></plist>";
}

class Properties : public ProcessFixture {
 protected:
  // A process whose bundle has this information dictionary.
  KRProcess* bundled(const std::string& information, InMemoryProcess process = {.pid = 10, .name = "A"}) {
    process.path = folder.folder("A.app");
    static_cast<void>(folder.file("A.app/Contents/Info.plist", information));
    return object(process);
  }

  // A process about which the system says this.
  KRProcess* known(std::initializer_list<std::pair<std::string_view, std::string_view>> entries,
                   InMemoryProcess process = {.pid = 10, .name = "A"}) {
    process.information = propertyListText(entries);
    return object(process);
  }

  ScratchFolder folder;
};

TEST_F(Properties, NameAndSignatureAreFetchedOnceAndKept) {
  KRProcess* process = object({.pid = 10,
                               .signature = 'ABCD',
                               .name = "Pro\xC3\xBC"
                                       "duct"});
  EXPECT_TRUE([process getProcessInfo]);
  EXPECT_EQ([process signature], 0x41424344U);
  EXPECT_EQ(toBytes([process signatureString]), "ABCD");
  EXPECT_EQ(toBytes([process signatureHexString]), "41424344");
  EXPECT_EQ(toBytes([process name]), "Pro\xC3\xBC"
                                     "duct");
  EXPECT_EQ(table.recordCalls(), 1);
  table.endPID(10);
  EXPECT_TRUE([process getProcessInfo]);
  EXPECT_EQ(toBytes([process name]), "Pro\xC3\xBC"
                                     "duct");
}

TEST_F(Properties, NothingIsKeptOfAProcessThatIsNotThere) {
  const platform::SerialNumber serial{77777, 10};
  KRProcess* process = [KRProcess processWithSerialNumber:serial];
  EXPECT_FALSE([process getProcessInfo]);
  EXPECT_TRUE([process path] == nil);
  table.add({.pid = 10, .name = "Late", .path = "/late", .serial = serial});
  EXPECT_TRUE([process getProcessInfo]);
  EXPECT_EQ(toBytes([process name]), "Late");
  EXPECT_EQ(toBytes([process path]), "/late");
}

TEST_F(Properties, TheDisplayNameFallsBackOnTheName) {
  EXPECT_EQ(toBytes([object({.pid = 10, .name = "A", .displayName = "Shown"}) displayName]), "Shown");
  EXPECT_EQ(toBytes([object({.pid = 11, .name = "A"}) displayName]), "A");
}

TEST_F(Properties, TheDisplayNameIsKept) {
  InMemoryProcess process{.pid = 10, .name = "A", .displayName = "Shown"};
  process.serial = table.add(process);
  KRProcess* found = [KRProcess processWithSerialNumber:process.serial];
  EXPECT_EQ(toBytes([found displayName]), "Shown");
  process.displayName = "Other";
  table.change(process);
  EXPECT_EQ(toBytes([found displayName]), "Shown");
}

TEST_F(Properties, ThePathIsKeptAndSurvivesBytesThatAreNoText) {
  KRProcess* process = object({.pid = 10, .path = "/x\xFF/A.app"});
  EXPECT_EQ(toBytes([process path]), "/x\xFF/A.app");
  EXPECT_TRUE([process bundle] == nil);
  EXPECT_EQ(toBytes([process version]), "1.0");
  table.endPID(10);
  EXPECT_EQ(toBytes([process path]), "/x\xFF/A.app");
}

TEST_F(Properties, TheBundleIsTheOneAtThePath) {
  KRProcess* process = bundled(propertyListText({}));
  EXPECT_EQ(toBytes([[process bundle] bundlePath]), folder / "A.app");
  EXPECT_TRUE([object({.pid = 11, .path = folder.file("tool")}) bundle] == nil);
  EXPECT_TRUE([object({.pid = 12}) bundle] == nil);
}

TEST_F(Properties, TheIdentifierComesFromTheInformation) {
  EXPECT_EQ(toBytes([known({{"CFBundleIdentifier", "com.x.y"}}) identifier]), "com.x.y");
  EXPECT_EQ(toBytes([known({{"Other", "1"}}) identifier]), "");
}

TEST_F(Properties, TheInformationIsKept) {
  KRProcess* process = known({{"CFBundleIdentifier", "com.x.y"}});
  NSDictionary* information = [process infoDictionary];
  EXPECT_EQ([information count], 1U);
  table.endPID(10);
  EXPECT_EQ([process infoDictionary], information);
}

TEST_F(Properties, AProcessIsInTheBackgroundWhenItsInformationSaysSoInEitherWay) {
  EXPECT_TRUE([known({{"LSBackgroundOnly", "1"}}) isBackgroundOnly]);
  EXPECT_TRUE([known({{"LSUIElement", "1"}}) isBackgroundOnly]);
  EXPECT_TRUE(([known({{"LSBackgroundOnly", "0"}, {"LSUIElement", "YES"}}) isBackgroundOnly]));
  EXPECT_FALSE(([known({{"LSBackgroundOnly", "0"}, {"LSUIElement", "0"}}) isBackgroundOnly]));
  EXPECT_FALSE([known({}) isBackgroundOnly]);
  InMemoryProcess process{.pid = 10};
  process.information = dictionaryText("<key>LSUIElement</key><true/>");
  EXPECT_TRUE([object(process) isBackgroundOnly]);
  process.information = dictionaryText("<key>LSUIElement</key><array/>");
  EXPECT_FALSE([object(process) isBackgroundOnly]);
}

TEST_F(Properties, TheHashIsMadeOfIdentifierElseSignatureElseName) {
  EXPECT_EQ(toBytes([known({{"CFBundleIdentifier", "com.x.y"}}) hashStringSource]), "id:com.x.y");
  KRProcess* signedProcess = object({.pid = 11, .signature = 'ABCD', .name = "A"});
  EXPECT_EQ(toBytes([signedProcess hashStringSource]), "sig:ABCD");
  EXPECT_EQ(toBytes([object({.pid = 12, .name = "A"}) hashStringSource]), "name:A");
  EXPECT_EQ(toBytes([signedProcess hashString]), "cb81ea35585b6f639f980982c2d0f0cb");
}

TEST_F(Properties, ACocoaApplicationNamesItsPrincipalClass) {
  KRProcess* process = bundled(propertyListText({{"NSPrincipalClass", "NSApplication"}}));
  EXPECT_TRUE([process isCocoa]);
  EXPECT_EQ([process platform], KRPlatformCocoa);
  table.endPID(10);
  EXPECT_TRUE([process isCocoa]);
}

TEST_F(Properties, WithoutAPrincipalClassItIsNotCocoaAndStaysSo) {
  KRProcess* process = bundled(propertyListText({}));
  EXPECT_FALSE([process isCocoa]);
  EXPECT_EQ([process platform], KRPlatformCarbon);
  static_cast<void>(
      folder.file("A.app/Contents/Info.plist", propertyListText({{"NSPrincipalClass", "NSApplication"}})));
  EXPECT_FALSE([process isCocoa]);
}

TEST_F(Properties, APrincipalClassThatIsNoTextDoesNotMakeItCocoa) {
  EXPECT_FALSE([bundled(dictionaryText("<key>NSPrincipalClass</key><array/>")) isCocoa]);
}

TEST_F(Properties, APackageOfAnotherKindIsNotCocoa) {
  EXPECT_FALSE([bundled(propertyListText({{"NSPrincipalClass", "NSApplication"}}),
                        {.pid = 10, .name = "A", .nativePackage = false}) isCocoa]);
}

TEST_F(Properties, AJavaApplicationSaysSoInItsIdentifier) {
  EXPECT_EQ([known({{"CFBundleIdentifier", "com.my-java"}}) platform], KRPlatformCarbon);
  EXPECT_EQ([known({{"CFBundleIdentifier", "com.javax"}}) platform], KRPlatformJava);
  EXPECT_EQ([known({{"CFBundleIdentifier", "com.Java"}}) platform], KRPlatformCarbon);
  EXPECT_EQ(toBytes(KRPlatformCocoa), "Cocoa");
  EXPECT_EQ(toBytes(KRPlatformCarbon), "Carbon");
  EXPECT_EQ(toBytes(KRPlatformJava), "Java");
}

TEST_F(Properties, TheVersionIsTheMarketingVersionWhenItHasADot) {
  EXPECT_EQ(
      toBytes([bundled(propertyListText({{"CFBundleShortVersionString", "7.1"}, {"CFBundleVersion", "812"}}))
          version]),
      "7.1");
}

TEST_F(Properties, WithoutADotTheBuildVersionCounts) {
  EXPECT_EQ(
      toBytes([bundled(propertyListText({{"CFBundleShortVersionString", "7"}, {"CFBundleVersion", "812"}}))
          version]),
      "812");
}

TEST_F(Properties, ABundleThatNamesNoVersionHasVersionOne) {
  EXPECT_EQ(toBytes([bundled(propertyListText({{"CFBundleShortVersionString", "7"}})) version]), "1.0");
  EXPECT_EQ(toBytes([bundled(propertyListText({})) version]), "1.0");
  EXPECT_EQ(toBytes([bundled("not a property list") version]), "1.0");
  EXPECT_EQ(toBytes([bundled(dictionaryText("<key>CFBundleVersion</key><integer>3</integer>")) version]),
            "1.0");
}

TEST_F(Properties, TheBundleDecidesAndNotTheResource) {
  EXPECT_EQ(toBytes([bundled(propertyListText({}),
                             {.pid = 10, .name = "A", .versionResource = std::string("\0\x80\x23\x05", 4)})
                version]),
            "1.0");
}

TEST_F(Properties, AnExecutableWithoutABundleHasTheVersionOfItsResource) {
  KRProcess* process = object({.pid = 10,
                               .name = "A",
                               .path = folder.file("tool"),
                               .versionResource = std::string("\0\x80\x23\x05", 4)});
  EXPECT_EQ(toBytes([process carbonVersion]), "5.2.3");
  EXPECT_EQ(toBytes([process version]), "5.2.3");
  EXPECT_EQ([process majorVersionNumber], 5);
  EXPECT_TRUE([process isAtLeastVersion:@"5.2"]);
  EXPECT_FALSE([process isAtLeastVersion:@"5.10"]);
  EXPECT_TRUE([process isAtLeastVersion:nil]);
  EXPECT_EQ(toBytes([object({.pid = 11, .name = "B", .path = folder / "tool"}) version]), "1.0");
}

TEST_F(Properties, AVersionOnceAnsweredIsKeptAlsoWhenItWasAGuess) {
  InMemoryProcess process{.pid = 10, .name = "A"};
  process.serial = table.add(process);
  KRProcess* found = [KRProcess processWithSerialNumber:process.serial];
  EXPECT_EQ(toBytes([found version]), "1.0");
  process.path = folder.file("tool");
  process.versionResource = std::string("\0\x80\x23\x05", 4);
  table.change(process);
  EXPECT_EQ(toBytes([found version]), "1.0");
}

TEST_F(Properties, TheLaunchDateComesFromTheKernelAndIsKept) {
  KRProcess* process = object({.pid = 10, .startTime = 1'000'000'000.25});
  EXPECT_EQ([[process launchDate] timeIntervalSince1970], 1'000'000'000.25);
  clock.sleep(10.5);
  EXPECT_EQ([process secondsRunning], 10.25);
  table.endPID(10);
  EXPECT_EQ([[process launchDate] timeIntervalSince1970], 1'000'000'000.25);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(Properties, SecondsRunningHaveSinglePrecision) {
  KRProcess* process = object({.pid = 10, .startTime = 0});
  clock.sleep(0.1);
  EXPECT_EQ([process secondsRunning], static_cast<double>(static_cast<float>(1'000'000'000.1)));
}

TEST_F(Properties, OfAProcessThatIsNotThereTheLaunchDateIsNow) {
  KRProcess* process = object({.pid = 10, .name = "A"});
  EXPECT_EQ(toBytes([process name]), "A");
  table.endPID(10);
  EXPECT_EQ([[process launchDate] timeIntervalSince1970], clock.wallSeconds());
  EXPECT_EQ(log.lines(), Lines{"*** Cannot get launch date for A"});
  clock.sleep(5);
  EXPECT_EQ([process secondsRunning], 5.0);
  EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(Properties, TheCpuTimeIsReadEachTime) {
  InMemoryProcess process{.pid = 10, .userTime = "1:02.50"};
  process.serial = table.add(process);
  KRProcess* found = [KRProcess processWithSerialNumber:process.serial];
  EXPECT_EQ([found cpuTime], 62.5);
  process.userTime = "1:03.00";
  table.change(process);
  EXPECT_EQ([found cpuTime], 63.0);
  process.userTime.reset();
  table.change(process);
  EXPECT_EQ([found cpuTime], 0.0);
}

TEST_F(Properties, IsStillRunningWhileItHasAProcessID) {
  KRProcess* process = object({.pid = 10});
  EXPECT_TRUE([process isStillRunning]);
  EXPECT_EQ([process unixPID], 10);
  table.endPID(10);
  EXPECT_FALSE([process isStillRunning]);
  EXPECT_EQ([process unixPID], 0);
}

TEST_F(Properties, ValuesAreAttachedByKeyAndRemovedByNil) {
  KRProcess* process = object({.pid = 10});
  EXPECT_TRUE([process info] == nil);
  EXPECT_TRUE([process infoForKey:@"k"] == nil);
  [process setInfo:@"one" forKey:@"k"];
  [process setInfo:@"two"];
  EXPECT_EQ(toBytes([process infoForKey:@"k"]), "one");
  EXPECT_EQ(toBytes([process infoForKey:@""]), "two");
  EXPECT_EQ(toBytes([process info]), "two");
  [process setInfo:nil forKey:@"k"];
  EXPECT_TRUE([process infoForKey:@"k"] == nil);
  [process setInfo:nil];
  EXPECT_TRUE([process info] == nil);
  [process setInfo:@"lost" forKey:nil];
  EXPECT_TRUE([process infoForKey:nil] == nil);
}

}  // namespace
}  // namespace kr
