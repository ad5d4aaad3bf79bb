// What the utilities say of the program's surroundings.
#import "library/utilities/KRUtilities.h"

#include <unistd.h>

#import "platform/cocoa/Bridging.h"
#import "tests/library/utilities/UtilitiesFixture.h"
#include "tests/support/ScratchFolder.h"

namespace kr::testing {
namespace {

using platform::VersionPart;

// Settings of this run alone, as words of the command line are.
NSString* const kDomain = NSArgumentDomain;
NSString* const kAddress = @"https://maker.example/downloads";
constexpr const char* kUnsafeAddress = "http://maker.example/downloads";

class Probes : public UtilitiesFixture {
 protected:
  ~Probes() override { [[NSUserDefaults standardUserDefaults] removeVolatileDomainForName:kDomain]; }

  void setSystem(std::int32_t minor, std::int32_t bugfix) {
    system_.parts = {{VersionPart::major, 10}, {VersionPart::minor, minor}, {VersionPart::bugfix, bugfix}};
  }
  static void setFirstSystem(id value) {
    NSUserDefaults* defaults = [NSUserDefaults standardUserDefaults];
    [defaults removeVolatileDomainForName:kDomain];
    [defaults setVolatileDomain:@{@"httpsMinSys" : value} forName:kDomain];
  }
};

TEST_F(Probes, TellADistributionDiskAndTheModeOfAnInstaller) {
  ScratchFolder folder;
  // The scratch folder itself is a place that does not last.
  ASSERT_EQ(::chdir(folder.path().c_str()), 0);
  fileSystems_.volumes = {"/proc/self/cwd"};
  program_.bundle = "/proc/self/cwd/Disk/Product.app";
  EXPECT_FALSE([KRUtilities runningFromDistributionDisk]);
  EXPECT_FALSE([KRUtilities installationMode]);
  folder.file("Disk/.launchlock", "");
  EXPECT_TRUE([KRUtilities runningFromDistributionDisk]);
  EXPECT_TRUE([KRUtilities installationMode]);
  program_.bundle = "/var/tmp/Product.app";
  EXPECT_FALSE([KRUtilities runningFromDistributionDisk]);
  EXPECT_TRUE([KRUtilities installationMode]);
}

TEST_F(Probes, ResolveAliases) {
  fileSystems_.aliases["/alias"] = "/target";
  EXPECT_EQ(toBytes([KRUtilities resolvedAlias:@"/alias"]), "/target");
  NSString* file = @"/file";
  EXPECT_EQ([KRUtilities resolvedAlias:file], file);
  EXPECT_EQ([KRUtilities resolvedAlias:nil], nil);
}

TEST_F(Probes, NameTheTypeOfAFileSystem) {
  fileSystems_.types["/home"] = {.status = 0, .name = "ext4"};
  EXPECT_EQ(toBytes([KRUtilities fileSystemTypeFor:@"/home"]), "ext4");
  EXPECT_EQ(toBytes([KRUtilities fileSystemTypeFor:@"/gone"]), "");
  const Lines lines = log_.lines();
  ASSERT_GE(lines.size(), 4U);
  EXPECT_EQ(Lines(lines.end() - 4, lines.end()),
            (Lines{"FS Info /home", "statfs err = 0", "FS Info /gone", "statfs err = -1"}));
}

TEST_F(Probes, KnowWhoHasStartedTheProgram) {
  EXPECT_FALSE([KRUtilities wasLaunchedByProcess:@"lgnw"]);
  EXPECT_FALSE([KRUtilities wasLaunchedByProcess:nil]);
  launcher_.launcher = "ABCD";
  EXPECT_TRUE([KRUtilities wasLaunchedByProcess:@"ABCD"]);
  EXPECT_FALSE([KRUtilities wasLaunchedByProcess:@"abcd"]);
  EXPECT_FALSE([KRUtilities wasLaunchedByProcess:@"ABC"]);
  EXPECT_FALSE([KRUtilities wasLaunchedByProcess:nil]);
  EXPECT_FALSE([KRUtilities wasLaunchedAsLoginItem]);
  launcher_.launcher = "lgnw";
  EXPECT_TRUE([KRUtilities wasLaunchedAsLoginItem]);
}

TEST_F(Probes, MakeAddressesSafeForAnOldSystem) {
  setSystem(12, 6);
  EXPECT_EQ(toBytes([KRUtilities safeHTTPS:kAddress]), kUnsafeAddress);
  EXPECT_EQ([KRUtilities safeHTTPS:@"ftp://maker.example"], @"ftp://maker.example");
  EXPECT_EQ([KRUtilities safeHTTPS:nil], nil);
}

TEST_F(Probes, LeaveAddressesForANewerSystem) {
  setSystem(13, 0);
  EXPECT_EQ([KRUtilities safeHTTPS:kAddress], kAddress);
}

TEST_F(Probes, TakeTheUsersWordForWhatAnOldSystemIs) {
  setSystem(12, 0);
  setFirstSystem(@101200);
  EXPECT_EQ([KRUtilities safeHTTPS:kAddress], kAddress);
  setFirstSystem(@"101200");
  EXPECT_EQ([KRUtilities safeHTTPS:kAddress], kAddress) << "as it is typed on a command line";
  setFirstSystem(@101201);
  EXPECT_EQ(toBytes([KRUtilities safeHTTPS:kAddress]), kUnsafeAddress);
  setFirstSystem(@5);
  EXPECT_EQ(toBytes([KRUtilities safeHTTPS:kAddress]), kUnsafeAddress);
  setFirstSystem(@110000);
  EXPECT_EQ(toBytes([KRUtilities safeHTTPS:kAddress]), kUnsafeAddress);
  setFirstSystem(@[ @101200 ]);
  EXPECT_EQ(toBytes([KRUtilities safeHTTPS:kAddress]), kUnsafeAddress);
}

TEST_F(Probes, TellADebugger) {
  EXPECT_FALSE([KRUtilities debugging]);
  program_.debugged = true;
  EXPECT_TRUE([KRUtilities debugging]);
}

}  // namespace
}  // namespace kr::testing
