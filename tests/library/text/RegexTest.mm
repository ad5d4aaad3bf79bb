#include <gmock/gmock.h>

#include <atomic>
#include <thread>

#import "library/text/KRRegularExpression+Private.h"
#import "library/text/StringExtensions.h"
#include "platform/RegexReplacement.h"
#include "platform/Services.h"
#import "platform/cocoa/Bridging.h"
#include "platform/testing/RecordingLog.h"

namespace kr {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

std::atomic<int> lookUps{0};
NSString* nameLookedUp = nil;

Class noClass(NSString* name) {
  ++lookUps;
  nameLookedUp = name;
  return Nil;
}

Class someClass(NSString* name) {
  ++lookUps;
  return [NSRegularExpression class];
}

Class raise(NSString* name) {
  ++lookUps;
  [NSException raise:@"NoLuck" format:@"for %@", name];
  return Nil;
}

class RegularExpressions : public ::testing::Test {
 protected:
  RegularExpressions() {
    services_.log = &log_;
    scope_.emplace(services_);
    lookUps = 0;
  }
  ~RegularExpressions() override {
    [KRRegularExpression lookUpClassWith:nullptr];
    [pool_ drain];
  }

  static std::string replaced(NSString* text, NSString* pattern, NSString* replacement) {
    return toBytes([text stringByReplacingOccurrencesOfRegexPattern:pattern withTemplate:replacement]);
  }

  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
  platform::testing::RecordingLog log_;
  platform::Services services_ = platform::services();
  std::optional<platform::ScopedServices> scope_;
};

TEST_F(RegularExpressions, TheClassIsFoundByItsName) {
  EXPECT_EQ([KRRegularExpression regexClass], [NSRegularExpression class]);
  EXPECT_TRUE([KRRegularExpression regexAvailable]);
  EXPECT_TRUE([[KRRegularExpression regularExpressionWithPattern:@"a+" options:0 error:nullptr]
      isKindOfClass:[NSRegularExpression class]]);
  EXPECT_EQ([KRRegularExpression regularExpressionWithPattern:@"(" options:0 error:nullptr], nil);
}

TEST_F(RegularExpressions, OptionsAreHandedOn) {
  NSRegularExpression* regex =
      [KRRegularExpression regularExpressionWithPattern:@"A"
                                                options:NSRegularExpressionCaseInsensitive
                                                  error:nullptr];
  EXPECT_EQ([regex numberOfMatchesInString:@"a" options:0 range:NSMakeRange(0, 1)], 1U);
}

TEST_F(RegularExpressions, TheAnswerOfTheLookUpIsKept) {
  [KRRegularExpression lookUpClassWith:someClass];
  for (int time = 0; time < 3; ++time)
    EXPECT_EQ([KRRegularExpression regexClass], [NSRegularExpression class]);
  EXPECT_EQ(lookUps, 1);
}

TEST_F(RegularExpressions, WithoutTheClassThereAreNone) {
  [KRRegularExpression lookUpClassWith:noClass];
  NSError* const untouched = [NSError errorWithDomain:@"x" code:1 userInfo:nil];
  NSError* error = untouched;
  EXPECT_FALSE([KRRegularExpression regexAvailable]);
  EXPECT_EQ([KRRegularExpression regularExpressionWithPattern:@"a" options:0 error:&error], nil);
  EXPECT_EQ([KRRegularExpression regularExpressionWithPattern:@"(" options:0 error:&error], nil);
  EXPECT_EQ(error, untouched);
  EXPECT_EQ(lookUps, 1) << "that there is none is kept as well";
  EXPECT_TRUE([nameLookedUp isEqual:@"NSRegularExpression"]);
}

TEST_F(RegularExpressions, TheFirstLookUpIsOneForAllThreads) {
  [KRRegularExpression lookUpClassWith:someClass];
  std::vector<std::thread> threads;
  std::atomic<int> found{0};
  for (int count = 0; count < 8; ++count) {
    threads.emplace_back([&found] {
      GSRegisterCurrentThread();
      if ([KRRegularExpression regexClass] == [NSRegularExpression class]) ++found;
      GSUnregisterCurrentThread();
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(found, 8);
  EXPECT_EQ(lookUps, 1);
}

TEST_F(RegularExpressions, ALookUpThatRaisesLeavesTheLockFree) {
  [KRRegularExpression lookUpClassWith:raise];
  bool raised = false;
  @try {
    [KRRegularExpression regexClass];
  } @catch (NSException* exception) {
    raised = true;
  }
  EXPECT_TRUE(raised);
  std::atomic<bool> gotThrough{false};
  std::thread other([&gotThrough] {
    GSRegisterCurrentThread();
    [KRRegularExpression lookUpClassWith:someClass];
    gotThrough = [KRRegularExpression regexClass] != Nil;
    GSUnregisterCurrentThread();
  });
  other.join();
  EXPECT_TRUE(gotThrough);
}

TEST_F(RegularExpressions, EveryMatchIsReplacedByTheTemplate) {
  EXPECT_EQ(replaced(@"a1b22", @"[0-9]+", @"<$0>"), "a<1>b<22>");
  EXPECT_EQ(replaced(@"John Smith", @"(\\w+) (\\w+)", @"$2, $1"), "Smith, John");
  EXPECT_EQ(replaced(@"abc", @"x*", @"-"), "-a-b-c-");
  EXPECT_EQ(replaced(@"aaa", @"a", @""), "");
  EXPECT_EQ(replaced(@"x😀y", @".", @"$0."), "x.😀.y.") << "a pair of surrogates is one character";
  EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(RegularExpressions, ATemplateTakesOnlyDollarsBeforeDigitsAndBackslashesSpecially) {
  EXPECT_EQ(replaced(@"a", @"(a)", @"$$1 $x $"), "$a $x $");
  EXPECT_EQ(replaced(@"a", @"(a)", @"\\$1 \\\\ \\n \\"), "$1 \\ n \\");
  EXPECT_EQ(replaced(@"a", @"(a)", @"$12"), "a2") << "there is no group 12";
  EXPECT_EQ(replaced(@"a", @"(a)", @"[$7]"), "[]");
  EXPECT_EQ(replaced(@"ab", @"(a)|(b)", @"[$1$2]"), "[a][b]")
      << "a group without a part in the match is empty";
  EXPECT_EQ(replaced(@"abcdefghijk", @"(a)(b)(c)(d)(e)(f)(g)(h)(i)(j)", @"$10$1"), "jak");
}

TEST_F(RegularExpressions, WordBoundariesAreThoseOfUnicode) {
  EXPECT_EQ(replaced(@"one two", @"\\b", @"|"), "|one| |two|");
  EXPECT_EQ(replaced(@"it's 3.14", @"\\b", @"|"), "|it's| |3.14|")
      << "not at an apostrophe or a decimal point";
  EXPECT_EQ(replaced(@"été", @"\\b", @"|"), "|été|");
}

TEST_F(RegularExpressions, TheReceiverComesBackWhenNothingChanges) {
  NSString* text = @"abc";
  EXPECT_EQ([text stringByReplacingOccurrencesOfRegexPattern:@"x" withTemplate:@"y"], text);
  EXPECT_EQ([text stringByReplacingOccurrencesOfRegexPattern:@"b" withTemplate:@"$0"], text);
  EXPECT_EQ([@"" stringByReplacingOccurrencesOfRegexPattern:@"x" withTemplate:nil], @"");
}

TEST_F(RegularExpressions, ABadPatternIsLoggedAndChangesNothing) {
  NSString* text = @"abc";
  EXPECT_EQ([text stringByReplacingOccurrencesOfRegexPattern:@"(b" withTemplate:@"y"], text);
  ASSERT_EQ(log_.lines().size(), 1U);
  EXPECT_THAT(log_.lines()[0], StartsWith("Regular expression error: "));
  EXPECT_THAT(log_.lines()[0], HasSubstr("(b"));
  EXPECT_EQ([text stringByReplacingOccurrencesOfRegexPattern:@"" withTemplate:@"y"], text);
  EXPECT_EQ(log_.lines().size(), 2U) << "the empty pattern is a bad one, too";
}

TEST_F(RegularExpressions, APatternThatTheSystemGivesUpOnIsLogged) {
  // Every way to divide the letters is tried, and each has to be remembered.
  NSString* text = [@"a" repeated:3000000];
  EXPECT_EQ([text stringByReplacingOccurrencesOfRegexPattern:@"(a|b)*c" withTemplate:@"y"], text);
  EXPECT_THAT(log_.lines(), ElementsAre("Regular expression error: U_REGEX_STACK_OVERFLOW"));
}

TEST_F(RegularExpressions, WhereThereAreNoneThatIsLoggedOnce) {
  [KRRegularExpression lookUpClassWith:noClass];
  NSString* text = @"abc";
  for (int time = 0; time < 3; ++time) {
    EXPECT_EQ([text stringByReplacingOccurrencesOfRegexPattern:@"b" withTemplate:@"y"], text);
  }
  EXPECT_THAT(log_.lines(),
              ElementsAre("Regular expressions are not available (require OS X 10.7 or newer)."));
}

TEST_F(RegularExpressions, LoneSurrogatesAreCharacters) {
  const std::u16string text{0xDC80, u'a', 0xD800};
  NSString* result = [toNSString(text) stringByReplacingOccurrencesOfRegexPattern:@"a" withTemplate:@"b"];
  EXPECT_EQ(toUTF16(result), (std::u16string{0xDC80, u'b', 0xD800}));
}

}  // namespace
}  // namespace kr
