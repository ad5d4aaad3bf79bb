#include "library/sound/SoundFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <set>

#include "platform/posix/Files.h"
#include "tests/support/ScratchFolder.h"

namespace kr {
namespace {

using testing::ScratchFolder;
using ::testing::UnorderedElementsAre;
using Paths = std::vector<std::string>;

TEST(SoundFiles, TheExtensionsAreThese) {
  const auto all = soundFileExtensions();
  EXPECT_EQ(all.size(), 23U);
  EXPECT_EQ(std::set<std::string_view>(all.begin(), all.end()),
            (std::set<std::string_view>{"aiff", "AIFF",   "'AIFF'", "aif", "AIF", "aifc", "AIFC",   "wav",
                                        "WAV",  "'WAVE'", "snd",    "SND", "au",  "AU",   "'ULAW'", "'ALAW'",
                                        "mp3",  "MP3",    "'Mp3 '", "ulw", "ULW", "m4p",  "m4a"}));
}

TEST(SoundFiles, AFileIsASoundByItsExtensionAlone) {
  for (const char* path :
       {"bell.AIFF", "/x/bell.aif", "bell.old.wav", "/no.such/folder/bell.m4a", "x.'Mp3 '", "/x/bell.mp3/"}) {
    EXPECT_TRUE(isSoundFile(path)) << path;
  }
  for (const char* path :
       {"bell.Aiff", "bell.M4A", "bell.M4P", "bell.Wav", "bell.ogg", "bell", "aiff", ".aiff", "",
        "bell.aiff.txt", "bell.", "/x.aiff/bell", "bell.Mp3 ", "bell.'aiff'"}) {
    EXPECT_FALSE(isSoundFile(path)) << path;
  }
}

TEST(SoundFiles, ChoosingThemKeepsTheirOrder) {
  EXPECT_EQ(soundFiles({"/b.wav", "/a.txt", "/c.Aiff", "/a.aiff"}), (Paths{"/b.wav", "/a.aiff"}));
}

TEST(SoundFiles, TheSystemHasThreeFoldersOfThem) {
  EXPECT_EQ(systemSoundFolders("/home/me"),
            (Paths{"/System/Library/Sounds", "/Library/Sounds", "/home/me/Library/Sounds"}));
}

TEST(SoundFiles, FoldersAreListedOneAfterTheOther) {
  const ScratchFolder scratch;
  for (const char* name : {"one/b.aiff", "one/a.wav", "one/text.txt", "one/inner/deep.wav", "two/c.mp3"}) {
    scratch.file(name);
  }
  const Paths found = soundFilesInFolders({scratch / "two", scratch / "one"});
  ASSERT_EQ(found.size(), 3U);
  EXPECT_EQ(found[0], scratch / "two/c.mp3");
  EXPECT_THAT(found,
              UnorderedElementsAre(scratch / "two/c.mp3", scratch / "one/b.aiff", scratch / "one/a.wav"));
}

TEST(SoundFiles, AFolderIsInTheOrderInWhichItIsListed) {
  const ScratchFolder scratch;
  for (int number = 0; number < 40; ++number)
    scratch.file("x/" + std::to_string(number * 7919 % 97) + ".wav");
  const Paths names = files::entries(scratch / "x").value();
  Paths listed;
  for (const std::string& name : names) listed.push_back(scratch / "x/" + name);
  EXPECT_EQ(soundFilesInFolders({scratch / "x"}), listed);
}

TEST(SoundFiles, WhatIsNoFolderIsPassedOver) {
  const ScratchFolder scratch;
  const std::string sound = scratch.file("x/a.wav");
  EXPECT_EQ(soundFilesInFolders({scratch / "missing", scratch.file("file.wav"), scratch / "x", ""}),
            Paths{sound});
}

TEST(SoundFiles, ANameIsTheLastComponentWithoutItsExtension) {
  EXPECT_EQ(soundName("/x/Glass.aiff"), "Glass");
  EXPECT_EQ(soundName("/x/Two words.old.wav"), "Two words.old");
  EXPECT_EQ(soundName("Glass"), "Glass");
}

TEST(SoundFiles, TheFirstFileOfANameIsTaken) {
  const Paths all{"/a/Basso.wav", "/b/Glass.aiff", "/c/Glass.wav"};
  EXPECT_EQ(fileOfSound("Glass", all), "/b/Glass.aiff");
  EXPECT_EQ(fileOfSound("glass", all), std::nullopt);
  EXPECT_EQ(fileOfSound("Glass.aiff", all), std::nullopt);
  EXPECT_EQ(fileOfSound("", all), std::nullopt);
}

}  // namespace
}  // namespace kr
