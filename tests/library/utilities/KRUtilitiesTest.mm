#import "library/utilities/KRUtilities.h"

#include <array>
#include <cstring>

#import "library/process/KRProcess.h"
#import "platform/cocoa/Bridging.h"
#import "tests/library/utilities/UtilitiesFixture.h"

namespace kr::testing {
namespace {

using platform::VersionPart;

class Utilities : public UtilitiesFixture {
 protected:
  void setParts(std::int32_t major, std::int32_t minor, std::int32_t bugfix) {
    system_.parts = {{VersionPart::major, major}, {VersionPart::minor, minor}, {VersionPart::bugfix, bugfix}};
  }
};

TEST_F(Utilities, CompareVersions) {
  EXPECT_EQ([KRUtilities compareVersion:@"10.15" withVersion:@"10.9"], NSOrderedDescending);
  EXPECT_EQ([KRUtilities compareVersion:@"1.2b4" withVersion:@"1.2"], NSOrderedAscending);
  EXPECT_EQ([KRUtilities compareVersion:@"1.2" withVersion:@"1.2"], NSOrderedSame);
  EXPECT_EQ([KRUtilities compareVersion:nil withVersion:@"1.2"], NSOrderedAscending);
  EXPECT_EQ([KRUtilities compareVersion:nil withVersion:nil], NSOrderedSame);
  EXPECT_EQ(NSOrderedAscending, -1);
  EXPECT_EQ(NSOrderedDescending, 1);
}

TEST_F(Utilities, AnswerThePlainVersion) {
  EXPECT_EQ(toBytes([KRUtilities plainVersionOf:@"2.1b3"]), "2.1");
  EXPECT_EQ(toBytes([KRUtilities plainVersionOf:@"3.0"]), "3.0");
  EXPECT_EQ(toBytes([KRUtilities plainVersionOf:@"beta"]), "");
  EXPECT_NE([KRUtilities plainVersionOf:nil], nil);
}

TEST_F(Utilities, HaveTheStagesOfDevelopment) {
  EXPECT_EQ(developmentStage('b'), 3U);
  EXPECT_EQ(developmentStage(' '), 5U);
  EXPECT_EQ(developmentStage(0x4E00), 0U);
}

TEST_F(Utilities, AnswerTheVersionOfTheSystem) {
  setParts(10, 14, 6);
  system_.parts[VersionPart::packed] = 0x1096;
  EXPECT_EQ([KRUtilities hexSystemVersion], 0x1096U);
  EXPECT_EQ(toBytes([KRUtilities systemVersionString]), "10.14.6");
  EXPECT_EQ([KRUtilities decimalSystemVersion], 101406U);
  setParts(11, 0, 0);
  EXPECT_EQ(toBytes([KRUtilities systemVersionString]), "11.0");
  EXPECT_EQ([KRUtilities decimalSystemVersion], 101406U) << "kept from the first question on";
}

TEST_F(Utilities, AnswerThreePartsOfSixteenBitsFromTheLowestOn) {
  setParts(10, 14, 6);
  const KRThreePartVersion version = [KRUtilities threePartVersion];
  EXPECT_EQ(version.major, 10);
  EXPECT_EQ(version.minor, 14);
  EXPECT_EQ(version.bugfix, 6);
  std::uint64_t packed = 0;
  static_assert(sizeof version == 6);
  std::memcpy(&packed, &version, sizeof version);
  EXPECT_EQ(packed, 10ULL | 14ULL << 16 | 6ULL << 32);
}

struct Predicate {
  SEL name;
  double threshold;
  bool orOlder;
};

TEST_F(Utilities, AnswerEveryNamedLevel) {
  const std::array<Predicate, 12> predicates{{{@selector(pantherOrOlder), 743.0, true},
                                              {@selector(leopardOrNewer), 825.0, false},
                                              {@selector(snowleopardOrNewer), 1038.0, false},
                                              {@selector(lionOrNewer), 1138.0, false},
                                              {@selector(mountainLionOrNewer), 1187.0, false},
                                              {@selector(mavericksOrNewer), 1265.0, false},
                                              {@selector(yosemiteOrNewer), 1343.0, false},
                                              {@selector(elCapitanOrNewer), 1404.0, false},
                                              {@selector(sierraOrNewer), 1490.0, false},
                                              {@selector(highSierraOrNewer), 1537.2, false},
                                              {@selector(mojaveOrNewer), 1639.0, false},
                                              {@selector(catalinaOrNewer), 1861.0, false}}};
  const auto ask = [](SEL name) {
    const auto method = reinterpret_cast<BOOL (*)(id, SEL)>([KRUtilities methodForSelector:name]);
    return method([KRUtilities class], name) != NO;
  };
  for (const Predicate& predicate : predicates) {
    SCOPED_TRACE(toBytes(NSStringFromSelector(predicate.name)));
    system_.appKit = predicate.threshold;
    EXPECT_TRUE(ask(predicate.name));
    system_.appKit = predicate.orOlder ? predicate.threshold + 1 : predicate.threshold - 0.1;
    EXPECT_FALSE(ask(predicate.name));
  }
}

TEST_F(Utilities, HaveNoNamesOutsideABundle) {
  EXPECT_EQ(toBytes([KRUtilities applicationName]), "");
  EXPECT_EQ(toBytes([KRUtilities versionString]), "");
  EXPECT_EQ(toBytes([KRUtilities plainVersionString]), "");
  EXPECT_EQ([KRUtilities appType], 0U);
}

NSString* gLanguage;

NSLocale* locale(Class, SEL) {
  return [[[NSLocale alloc] initWithLocaleIdentifier:gLanguage] autorelease];
}

TEST_F(Utilities, ShowADayAsTheUserWritesIt) {
  const auto current = ReplacedMethod::ofClass([NSLocale class], @selector(currentLocale), locale);
  [NSTimeZone setDefaultTimeZone:[NSTimeZone timeZoneForSecondsFromGMT:0]];
  gLanguage = @"en_US";
  EXPECT_EQ(toBytes([KRUtilities localizedDateString:@"2021-03-05"]), "3/5/21");
  gLanguage = @"de_DE";
  EXPECT_EQ(toBytes([KRUtilities localizedDateString:@"2021-03-05"]), "05.03.21");
}

TEST_F(Utilities, ShowTheDayThatItIsHereAtMidnightInUniversalTime) {
  const auto current = ReplacedMethod::ofClass([NSLocale class], @selector(currentLocale), locale);
  gLanguage = @"en_US";
  [NSTimeZone setDefaultTimeZone:[NSTimeZone timeZoneForSecondsFromGMT:-5 * 3600]];
  EXPECT_EQ(toBytes([KRUtilities localizedDateString:@"2021-03-05"]), "3/4/21");
  [NSTimeZone setDefaultTimeZone:[NSTimeZone timeZoneForSecondsFromGMT:9 * 3600]];
  EXPECT_EQ(toBytes([KRUtilities localizedDateString:@"2021-03-05"]), "3/5/21");
}

TEST_F(Utilities, ShowNothingForWhatIsNoDay) {
  EXPECT_EQ([KRUtilities localizedDateString:@"yesterday"], nil);
  EXPECT_EQ([KRUtilities localizedDateString:@""], nil);
  EXPECT_EQ([KRUtilities localizedDateString:nil], nil);
}

TEST_F(Utilities, KnowWhichProgramChangedTheClipboard) {
  const auto writer = processes_.add({.pid = 100, .name = "Writer"});
  const auto reader = processes_.add({.pid = 101, .name = "Reader"});
  windowOrder_.inFront = writer;
  EXPECT_EQ([KRUtilities clipboardPublisherProcess], nil);
  ++clipboard_.count;
  EXPECT_TRUE([[KRUtilities clipboardPublisherProcess] isEqual:[KRProcess processWithSerialNumber:writer]]);
  windowOrder_.inFront = reader;
  [KRUtilities processSwitched:nil];
  EXPECT_TRUE([[KRUtilities clipboardPublisherProcess] isEqual:[KRProcess processWithSerialNumber:writer]]);
  ++clipboard_.count;
  EXPECT_TRUE([[KRUtilities clipboardPublisherProcess] isEqual:[KRProcess processWithSerialNumber:reader]]);
}

}  // namespace
}  // namespace kr::testing
