#include "platform/linux/SoundFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "platform/Services.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/WaveFile.h"

namespace kr::platform {
namespace {

using kr::testing::waveFile;

class SoundFileTest : public ::testing::Test {
 protected:
  SoundFileTest() : scope_(set()) {}

  static std::unique_ptr<SoundFile> open(const std::string& bytes) {
    return SoundFile::open(std::as_bytes(std::span(bytes)));
  }

  static std::vector<float> all(SoundFile& file) {
    std::vector<float> samples;
    std::vector<float> buffer(1001);
    while (const std::size_t count = file.read(buffer)) {
      samples.insert(samples.end(), buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(count));
    }
    return samples;
  }

  kr::platform::testing::RecordingLog log;

 private:
  Services set() {
    Services services = platform::services();
    services.log = &log;
    return services;
  }
  ScopedServices scope_;
};

TEST_F(SoundFileTest, TellsWhatTheFileHolds) {
  const std::string bytes = waveFile({.seconds = 0.5, .channels = 2, .framesPerSecond = 22050});
  const auto file = open(bytes);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(file->framesPerSecond(), 22050U);
  EXPECT_EQ(file->channels(), 2);
  EXPECT_NEAR(file->duration(), 0.5, 1e-4);
}

TEST_F(SoundFileTest, ReadsEverySample) {
  const std::string bytes = waveFile({.seconds = 0.5, .amplitude = 0.5});
  const auto file = open(bytes);
  ASSERT_NE(file, nullptr);
  const std::vector<float> samples = all(*file);
  ASSERT_EQ(samples.size(), 22050U);
  EXPECT_NEAR(*std::max_element(samples.begin(), samples.end()), 0.5, 1e-3);
  EXPECT_NEAR(*std::min_element(samples.begin(), samples.end()), -0.5, 1e-3);
  EXPECT_NEAR(samples[25], 0.5 * std::sin(2 * 3.14159265 * 441 * 25 / 44100), 1e-3);
}

TEST_F(SoundFileTest, ReadsWholeFramesOnly) {
  const std::string bytes = waveFile({.seconds = 0.1, .channels = 2});
  const auto file = open(bytes);
  std::vector<float> odd(1001);
  EXPECT_EQ(file->read(odd), 1000U);
  EXPECT_EQ(file->read(std::span(odd).first(1)), 0U);
}

TEST_F(SoundFileTest, CanBeReadFromAnyPlace) {
  const std::string bytes = waveFile({.seconds = 1});
  const auto file = open(bytes);
  file->setPosition(0.75);
  EXPECT_NEAR(file->position(), 0.75, 1e-4);
  EXPECT_EQ(all(*file).size(), 11025U);
  file->setPosition(0);
  EXPECT_EQ(all(*file).size(), 44100U);
}

TEST_F(SoundFileTest, APlaceThatItDoesNotHaveChangesNothing) {
  const std::string bytes = waveFile({.seconds = 1});
  const auto file = open(bytes);
  file->setPosition(0.5);
  for (const double place : {-1.0, 1.5, std::nan("")}) {
    file->setPosition(place);
    EXPECT_NEAR(file->position(), 0.5, 1e-4) << place;
  }
}

TEST_F(SoundFileTest, WhatIsNoSoundIsNotOpened) {
  for (const std::string& bytes : {std::string(), std::string("no sound"), std::string(10'000, 'x'),
                                   std::string("RIFF"), waveFile().substr(0, 30)}) {
    EXPECT_EQ(open(bytes), nullptr) << bytes.size();
  }
  const std::vector<std::string> lines = log.lines();
  ASSERT_EQ(lines.size(), 5U);
  for (const std::string& line : lines) {
    EXPECT_TRUE(line.starts_with("*** could not read a sound: ")) << line;
  }
}

TEST_F(SoundFileTest, ADamagedFileIsReadAsFarAsItGoes) {
  const std::string bytes = waveFile({.seconds = 1}).substr(0, 44 + 2 * 1000);
  const auto file = open(bytes);
  ASSERT_NE(file, nullptr);
  EXPECT_LE(all(*file).size(), 1000U);
}

TEST_F(SoundFileTest, NoChangeOfAByteInTheHeaderIsHarmful) {
  for (std::size_t place = 0; place < 44; ++place) {
    for (const char value : {'\x00', '\x7F', '\xFF'}) {
      std::string bytes = waveFile({.seconds = 0.01});
      bytes[place] = value;
      const auto file = open(bytes);
      if (!file) continue;
      EXPECT_GE(file->channels(), 1);
      EXPECT_LE(all(*file).size(), 1'000'000U);
    }
  }
}

TEST_F(SoundFileTest, APartThatSaysItIsLargerThanTheFileIsHarmless) {
  for (const std::string& size : {std::string("\x00\x00\x01\x00", 4), std::string("\xF0\xFF\xFF\x7F", 4),
                                  std::string("\xFF\xFF\xFF\xFF", 4)}) {
    for (const char* part : {"LIST", "junk", "fact", "cue ", "smpl", "bext", "data"}) {
      const std::string whole = waveFile({.seconds = 0.01});
      const std::string bytes = whole.substr(0, 36) + part + size + whole.substr(36);
      const auto file = open(bytes);
      if (file) EXPECT_LE(all(*file).size(), 1'000U) << part;
    }
  }
  for (const std::string_view kind :
       {std::string_view("FORM\xFF\xFF\xFF\xFF"
                         "AIFFCOMM"),
        std::string_view(".snd\xFF\xFF\xFF\xF0"), std::string_view("RIFF\xFF\xFF\xFF\xFFWAVEfmt "),
        std::string_view("OggS"), std::string_view("fLaC"), std::string_view("caff\0\1\0\0desc", 12),
        std::string_view("ID3\4\0\0\x7F\x7F\x7F\x7F", 10)}) {
    const auto file = open(std::string(kind) + std::string(1000, '\xFF'));
    if (file) EXPECT_LE(all(*file).size(), 1'000'000U) << kind;
  }
}

TEST_F(SoundFileTest, TheExtensionsAreThoseOfWhatTheApplicationPlays) {
  const auto extensions = SoundFile::extensions();
  for (const std::string_view one : {"wav", "aiff", "mp3", "ogg", "flac"}) {
    EXPECT_NE(std::find(extensions.begin(), extensions.end(), one), extensions.end()) << one;
  }
}

}  // namespace
}  // namespace kr::platform
