// The skins over files and encodings.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>

#import "library/text/StringExtensions.h"
#import "platform/cocoa/Bridging.h"
#include "tests/support/ScratchFolder.h"

namespace kr {
namespace {

using namespace std::string_literals;

class StringFiles : public ::testing::Test {
 protected:
  ~StringFiles() override { [pool_ drain]; }

  NSString* file(const std::string& bytes) { return toNSString(scratch_.file("file", bytes)); }

  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
  kr::testing::ScratchFolder scratch_;
};

TEST_F(StringFiles, ExplicitEncodingIsThatOfTheMark) {
  const auto encoding = [this](const std::string& bytes) {
    return [NSString explicitEncodingOfFile:file(bytes) defaultEncoding:NSASCIIStringEncoding];
  };
  EXPECT_EQ(encoding("\xEF\xBB\xBFx"), NSUTF8StringEncoding);
  EXPECT_EQ(encoding("\xFE\xFF"), NSUTF16BigEndianStringEncoding);
  EXPECT_EQ(encoding("\xFF\xFE\0\0"s), NSUTF32LittleEndianStringEncoding);
  EXPECT_EQ(encoding("\xFF\xFE"), NSUTF32LittleEndianStringEncoding) << "missing bytes are zeros";
  EXPECT_EQ(encoding("\xFF\xFEx"), NSUTF16LittleEndianStringEncoding);
  EXPECT_EQ(encoding("\0\0\xFE\xFF"s), NSUTF32BigEndianStringEncoding);
  EXPECT_EQ(encoding("abc"), NSASCIIStringEncoding);
  EXPECT_EQ(encoding(""), NSASCIIStringEncoding);
}

TEST_F(StringFiles, ExplicitEncodingOfWhatCannotBeReadIsTheDefault) {
  for (NSString* path in @[ @"/no/such/file", @"/", @"" ]) {
    EXPECT_EQ([NSString explicitEncodingOfFile:path defaultEncoding:NSASCIIStringEncoding],
              NSASCIIStringEncoding);
  }
  EXPECT_EQ([NSString explicitEncodingOfFile:nil defaultEncoding:NSASCIIStringEncoding],
            NSASCIIStringEncoding);
}

TEST_F(StringFiles, BestEncoding) {
  EXPECT_EQ(toUTF16([NSString stringWithBestEncodingFromFile:file("\xFF\xFE\xAC\x20")]), u"€");
  EXPECT_EQ(toUTF16([NSString stringWithBestEncodingFromFile:file("caf\x8E noir")]), u"café noir");
  EXPECT_EQ([NSString stringWithBestEncodingFromFile:@"/no/such/file"], nil);
  EXPECT_EQ([NSString stringWithBestEncodingFromFile:nil], nil);
}

TEST_F(StringFiles, ReasonableTextFactorDoesNotDependOnTheName) {
  EXPECT_FLOAT_EQ([@"ab..\x01" reasonableTextFactor:@"MacRoman"], 0.2F);
  EXPECT_FLOAT_EQ([@"ab..\x01" reasonableTextFactor:nil], 0.2F);
  EXPECT_FLOAT_EQ([[@"a" repeated:5000] reasonableTextFactor:@"Latin1"], 1);
}

TEST_F(StringFiles, MacRomanStringsAreOfTheClassThatIsAsked) {
  EXPECT_EQ(toUTF16([NSString stringWithMacRomanCString:"caf\x8E"]), u"café");
  EXPECT_EQ(toUTF16([NSString stringWithMacRomanCString:"a\0\xDB" length:3]), std::u16string(u"a\0€", 3));
  NSMutableString* text = [NSMutableString stringWithMacRomanCString:"caf\x8E"];
  [text appendString:@"s"];
  EXPECT_EQ(toUTF16(text), u"cafés");
  text = [NSMutableString stringWithMacRomanCString:"\xDBx" length:1];
  [text appendString:@"s"];
  EXPECT_EQ(toUTF16(text), u"€s");
  EXPECT_EQ(toUTF16([NSString stringWithMacRomanCString:nullptr]), u"");
}

TEST_F(StringFiles, StringWithHTML) {
  const std::string bytes = "<html><meta charset=utf-8>\xC3\xA9";
  NSData* data = [NSData dataWithBytes:bytes.data() length:bytes.size()];
  EXPECT_EQ(toUTF16([NSString stringWithHTML:data]), u"<html><meta charset=utf-8>é");
  EXPECT_EQ(toUTF16([NSString stringWithHTML:nil]), u"");
}

TEST_F(StringFiles, AppendToFilePutsTheTextAtTheEnd) {
  NSString* path = toNSString(scratch_ / "log\xFF.txt");
  EXPECT_TRUE([@"caf\u00E9\n" appendToFile:path encoding:NSUTF8StringEncoding]);
  EXPECT_TRUE([@"caf\u00E9\n" appendToFile:path encoding:NSISOLatin1StringEncoding]);
  EXPECT_TRUE([@"" appendToFile:path encoding:NSUTF8StringEncoding]);
  EXPECT_EQ(kr::testing::readFile(scratch_ / "log\xFF.txt"), "caf\xC3\xA9\ncaf\xE9\n");
}

TEST_F(StringFiles, AppendToFileFailsWhereItCannotWrite) {
  EXPECT_FALSE([@"x" appendToFile:@"/no/such/folder/file" encoding:NSUTF8StringEncoding]);
  EXPECT_FALSE([@"x" appendToFile:toNSString(scratch_.path()) encoding:NSUTF8StringEncoding]);
  EXPECT_FALSE([@"x" appendToFile:@"/dev/full" encoding:NSUTF8StringEncoding]);
  EXPECT_FALSE([@"x" appendToFile:nil encoding:NSUTF8StringEncoding]);
}

TEST_F(StringFiles, AppendToFileFailsForATextWithoutThatEncoding) {
  NSString* path = file("before");
  EXPECT_FALSE([@"€" appendToFile:path encoding:NSASCIIStringEncoding]);
  EXPECT_EQ(kr::testing::readFile(scratch_ / "file"), "before");
  EXPECT_FALSE([@"€" appendToFile:toNSString(scratch_ / "new") encoding:NSASCIIStringEncoding]);
  EXPECT_EQ(kr::testing::readFile(scratch_ / "new"), "") << "the file is there all the same";
}

TEST_F(StringFiles, AppendToFileLeavesAFileThatMayNotBeWritten) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may write every file";
  NSString* path = file("before");
  ASSERT_EQ(::chmod((scratch_ / "file").c_str(), 0444), 0);
  EXPECT_FALSE([@"x" appendToFile:path encoding:NSUTF8StringEncoding]);
  EXPECT_EQ(kr::testing::readFile(scratch_ / "file"), "before");
}

}  // namespace
}  // namespace kr
