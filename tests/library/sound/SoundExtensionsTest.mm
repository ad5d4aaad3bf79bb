// The class operations that find sounds, and the alert volume. The test's bundle has sounds of its own.
#include <gmock/gmock.h>

#include <algorithm>

#include "platform/Paths.h"
#include "platform/posix/Files.h"
#import "tests/library/sound/SoundFixture.h"

namespace kr {
namespace {

using testing::Lines;
using testing::SoundFixture;
using ::testing::UnorderedElementsAre;

NSString* const kSuite = @"com.apple.systemsound";

class FindingSounds : public SoundFixture {
 protected:
  std::string systemSound(const std::string& name) { return scratch.file("home/Library/Sounds/" + name); }
};

class AlertVolumeSetting : public SoundFixture {
 protected:
  // For this run of the program, as if it stood in the settings of the system.
  static void store(id value) {
    NSUserDefaults* defaults = [NSUserDefaults standardUserDefaults];
    [defaults removeVolatileDomainForName:kSuite];
    [defaults setVolatileDomain:@{@"com.apple.sound.beep.volume" : value} forName:kSuite];
  }
};

TEST_F(FindingSounds, TheSetOfExtensionsIsBuiltOnce) {
  NSSet* extensions = [NSSound soundFileExtensions];
  EXPECT_EQ([extensions count], 23U);
  EXPECT_TRUE([extensions containsObject:@"'Mp3 '"]);
  EXPECT_FALSE([extensions isKindOfClass:[NSMutableSet class]]);
  EXPECT_EQ([NSSound soundFileExtensions], extensions);
}

TEST_F(FindingSounds, AFileIsASoundByItsExtension) {
  EXPECT_TRUE([NSSound isSoundFileAtPath:@"/x/bell.AIFF"]);
  EXPECT_FALSE([NSSound isSoundFileAtPath:@"/x/bell.Aiff"]);
  EXPECT_FALSE([NSSound isSoundFileAtPath:@"/x/bell.M4A"]);
  EXPECT_FALSE([NSSound isSoundFileAtPath:nil]);
}

TEST_F(FindingSounds, TheApplicationsOwnAreTheSoundFilesOfItsBundle) {
  const Lines files = names([NSSound applicationSoundFiles]);
  Lines last;
  for (const std::string& file : files) {
    last.emplace_back(paths::lastComponent(file));
    EXPECT_TRUE(files::exists(file)) << file;
  }
  EXPECT_THAT(last, UnorderedElementsAre("Done.wav", "SoundOfSilence.wav", "bell.AIFF", "Basso.mp3"));
}

TEST_F(FindingSounds, TheApplicationsOwnComeInTheOrderOfItsBundle) {
  Lines expected;
  for (NSString* path in [[NSBundle mainBundle] pathsForResourcesOfType:nil inDirectory:nil]) {
    if ([NSSound isSoundFileAtPath:path]) expected.push_back(toBytes(path));
  }
  EXPECT_EQ(names([NSSound applicationSoundFiles]), expected);
}

TEST_F(FindingSounds, TheNamesOfTheApplicationsOwnAreSortedAndWithoutTheSilentOne) {
  EXPECT_EQ(names([NSSound applicationSounds]), (Lines{"Basso", "Done", "bell"}));
}

TEST_F(FindingSounds, TheSystemsAreThoseInItsFolders) {
  const std::string glass = systemSound("Glass.aiff");
  systemSound("Glass.txt");
  const Lines files = names([NSSound systemSoundFiles]);
  EXPECT_NE(std::find(files.begin(), files.end(), glass), files.end());
  EXPECT_EQ(std::find(files.begin(), files.end(), scratch / "home/Library/Sounds/Glass.txt"), files.end());
}

TEST_F(FindingSounds, ASystemSoundIsNamedOnceAndTheNamesAreSorted) {
  for (const char* name : {"zz-b.wav", "zz-a.aiff", "zz-b.aiff", "zz-C.wav"}) systemSound(name);
  const Lines all = names([NSSound systemSounds]);
  Lines ours;
  std::copy_if(all.begin(), all.end(), std::back_inserter(ours),
               [](const std::string& name) { return name.starts_with("zz-"); });
  EXPECT_EQ(ours, (Lines{"zz-C", "zz-a", "zz-b"}));
}

TEST_F(FindingSounds, AnApplicationsSoundGoesBeforeASystemSoundOfItsName) {
  const std::string basso = systemSound("Basso.aiff");
  NSString* path = [NSSound pathOfSound:@"Basso"];
  EXPECT_EQ(paths::lastComponent(toBytes(path)), "Basso.mp3");
  EXPECT_NE(toBytes(path), basso);
}

TEST_F(FindingSounds, ASystemSoundIsFoundByItsName) {
  const std::string glass = systemSound("zz-Glass.aiff");
  EXPECT_EQ(toBytes([NSSound pathOfSound:@"zz-Glass"]), glass);
}

TEST_F(FindingSounds, ANameThatNothingHasIsNil) {
  EXPECT_EQ([NSSound pathOfSound:@"zz-missing"], nil);
  EXPECT_EQ([NSSound pathOfSound:@"bell.AIFF"], nil);
  EXPECT_EQ([NSSound pathOfSound:nil], nil);
}

TEST_F(AlertVolumeSetting, IsFullWhereItIsNotSet) {
  EXPECT_EQ([NSSound alertVolume], 1.0F);
}

TEST_F(AlertVolumeSetting, IsThatOfTheStoredNumber) {
  store(@0.47F);
  EXPECT_NEAR([NSSound alertVolume], 0.25F, 1e-6);
  store(@0.35F);
  EXPECT_EQ([NSSound alertVolume], 0.0F);
  store(@1);
  EXPECT_EQ([NSSound alertVolume], 1.0F);
}

TEST_F(AlertVolumeSetting, MayBeANumberInWriting) {
  store(@"0.61");
  EXPECT_NEAR([NSSound alertVolume], 0.5F, 1e-6);
}

TEST_F(AlertVolumeSetting, IsFullWhereNoNumberIsStored) {
  for (id value in @[ @"loud", @"0.4 or so", @"", @[ @0.4 ], @{}, [NSNumber numberWithFloat:NAN] ]) {
    store(value);
    EXPECT_EQ([NSSound alertVolume], 1.0F) << toBytes([value description]);
  }
}

}  // namespace
}  // namespace kr
