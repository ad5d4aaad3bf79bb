#import "tests/library/process/ProcessFixture.h"

namespace kr {
namespace {

using platform::SerialNumber;
using testing::Lines;
using testing::ProcessFixture;

class Lookup : public ProcessFixture {};

TEST_F(Lookup, ASerialNumberAlwaysLeadsToTheSameObject) {
  const SerialNumber serial = table.add({.pid = 10, .name = "A"});
  KRProcess* process = [KRProcess processWithSerialNumber:serial];
  ASSERT_TRUE(process != nil);
  EXPECT_EQ([process serialNumber], serial);
  EXPECT_EQ([KRProcess processWithSerialNumber:serial], process);
  EXPECT_EQ([KRProcess processWithPID:10], process);
}

TEST_F(Lookup, AnUnknownSerialNumberHasAnObjectOfWhichNothingIsKnown) {
  KRProcess* process = [KRProcess processWithSerialNumber:{123456, 99}];
  ASSERT_TRUE(process != nil);
  EXPECT_TRUE([process name] == nil);
  EXPECT_EQ([process signature], 0U);
  EXPECT_EQ(toBytes([process signatureString]), "");
  EXPECT_EQ(toBytes([process signatureHexString]), "00000000");
  EXPECT_TRUE([process path] == nil);
  EXPECT_TRUE([process bundle] == nil);
  EXPECT_EQ(toBytes([process identifier]), "");
  EXPECT_EQ(toBytes([process version]), "1.0");
  EXPECT_TRUE([process carbonVersion] == nil);
  EXPECT_TRUE([process displayName] == nil);
  EXPECT_TRUE([process infoDictionary] == nil);
  EXPECT_TRUE([process icon] == nil);
  EXPECT_FALSE([process isCocoa]);
  EXPECT_FALSE([process isStillRunning]);
  EXPECT_FALSE([process isBackgroundOnly]);
  EXPECT_EQ([process unixPID], 0);
  EXPECT_EQ([process cpuTime], 0.0);
  EXPECT_EQ(toBytes([process description]), "Process \"(null)\" () 1.0");
}

TEST_F(Lookup, AnUnknownProcessIDHasNoObject) {
  EXPECT_TRUE([KRProcess processWithPID:4711] == nil);
}

TEST_F(Lookup, OfSeveralProcessesWithOneSignatureTheFirstIsFound) {
  table.add({.pid = 10, .signature = 'AAAA'});
  const SerialNumber wanted = table.add({.pid = 11, .signature = 'BBBB'});
  table.add({.pid = 12, .signature = 'BBBB'});
  EXPECT_EQ([[KRProcess processWithSignature:'BBBB'] serialNumber], wanted);
  EXPECT_EQ([[KRProcess processWithSignatureString:@"BBBB"] serialNumber], wanted);
}

TEST_F(Lookup, ASignatureThatNobodyHasIsLookedForToTheEnd) {
  for (pid_t pid = 10; pid < 15; ++pid) table.add({.pid = pid});
  EXPECT_TRUE([KRProcess processWithSignature:'BBBB'] == nil);
  EXPECT_EQ(table.recordCalls(), 5);
  EXPECT_TRUE([KRProcess processWithSignatureString:@"BBBB"] == nil);
  EXPECT_TRUE([KRProcess processWithSignatureString:nil] == nil);
}

TEST_F(Lookup, AnIdentifierFindsTheFirstProcessThatHasIt) {
  using platform::testing::propertyListText;
  table.add({.pid = 10});
  const SerialNumber wanted =
      table.add({.pid = 11, .information = propertyListText({{"CFBundleIdentifier", "a.b"}})});
  table.add({.pid = 12, .information = propertyListText({{"CFBundleIdentifier", "a.b"}})});
  EXPECT_EQ([[KRProcess processWithIdentifier:@"a.b"] serialNumber], wanted);
  EXPECT_TRUE([KRProcess processWithIdentifier:@"A.B"] == nil);
  EXPECT_TRUE([KRProcess processWithIdentifier:nil] == nil);
}

TEST_F(Lookup, TheRunningProgramIsKeptOnceItIsKnown) {
  // Nothing is kept while the system does not know it; the other tests of this program may have found it
  // before.
  const SerialNumber serial = addCurrent();
  KRProcess* process = [KRProcess currentProcess];
  EXPECT_EQ([process serialNumber], serial);
  table.setCurrent(std::nullopt);
  EXPECT_EQ([KRProcess currentProcess], process);
  table.end(serial);
  [KRProcess cleanupCache];
  EXPECT_EQ([KRProcess currentProcess], process);
}

TEST_F(Lookup, TheFrontProcessIsAskedForEachTime) {
  EXPECT_TRUE([KRProcess frontProcess] == nil);
  KRProcess* one = object({.pid = 10});
  KRProcess* other = object({.pid = 11});
  order.inFront = [one serialNumber];
  EXPECT_EQ([KRProcess frontProcess], one);
  EXPECT_TRUE([one isFrontProcess]);
  EXPECT_FALSE([other isFrontProcess]);
  order.inFront = [other serialNumber];
  EXPECT_EQ([KRProcess frontProcess], other);
  EXPECT_TRUE([other isFrontProcess]);
}

TEST_F(Lookup, AllProcessesComeInTheOrderOfTheSystem) {
  EXPECT_EQ([[KRProcess allProcesses] count], 0U);
  KRProcess* one = object({.pid = 12});
  KRProcess* two =
      object({.pid = 10, .information = platform::testing::propertyListText({{"LSBackgroundOnly", "1"}})});
  KRProcess* three = object({.pid = 11});
  NSArray* expected = [NSArray arrayWithObjects:one, two, three, nil];
  EXPECT_TRUE([[KRProcess allProcesses] isEqual:expected]);
  EXPECT_FALSE([[KRProcess allProcesses] isKindOfClass:[NSMutableArray class]]);
}

TEST_F(Lookup, ObjectsAreEqualWhenTheirSerialNumbersAre) {
  const SerialNumber serial = table.add({.pid = 10});
  KRProcess* process = [KRProcess processWithSerialNumber:serial];
  KRProcess* twin = [[[KRProcess alloc] initWithSerialNumber:serial] autorelease];
  KRProcess* other = object({.pid = 11});
  EXPECT_NE(process, twin);
  EXPECT_TRUE([process isEqual:twin]);
  EXPECT_TRUE([process isEqual:process]);
  EXPECT_EQ([process hash], [twin hash]);
  EXPECT_FALSE([process isEqual:other]);
  EXPECT_FALSE([process isEqual:nil]);
  EXPECT_FALSE([process isEqual:@"process"]);
  EXPECT_TRUE([process isSameProcess:serial]);
  EXPECT_FALSE([process isSameProcess:[other serialNumber]]);
}

TEST_F(Lookup, TheHashIsTheSumOfBothWordsIn32Bits) {
  EXPECT_EQ(([[KRProcess processWithSerialNumber:{3, 4}] hash]), 7U);
  EXPECT_EQ(([[KRProcess processWithSerialNumber:{0xFFFFFFFF, 5}] hash]), 4U);
}

TEST_F(Lookup, ComparesNamesWithoutRegardToCase) {
  KRProcess* one = object({.pid = 10, .name = "alpha"});
  KRProcess* two = object({.pid = 11, .name = "Beta"});
  KRProcess* three = object({.pid = 12, .name = "ALPHA"});
  EXPECT_EQ([one compare:two], NSOrderedAscending);
  EXPECT_EQ([two compare:one], NSOrderedDescending);
  EXPECT_EQ([one compare:three], NSOrderedSame);
  EXPECT_EQ(([one compare:[KRProcess processWithSerialNumber:{123457, 1}]]), NSOrderedDescending);
}

TEST_F(Lookup, DescribesItself) {
  KRProcess* process =
      object({.pid = 10,
              .signature = 'ABCD',
              .name = "Product",
              .information = platform::testing::propertyListText({{"CFBundleIdentifier", "com.x.y"}})});
  EXPECT_EQ(toBytes([process description]), "Process \"Product\" (ABCD) 1.0");
  EXPECT_EQ(toBytes([process detailedDescription]), "Product V1.0 (ABCD/com.x.y)");
}

TEST_F(Lookup, TheDiagnosticsReportSortsForegroundAndBackgroundProcessesWithoutRegardToCase) {
  using platform::testing::propertyListText;
  table.add({.pid = 10, .signature = 'BBBB', .name = "beta"});
  table.add({.pid = 11, .signature = 'CCCC', .name = "Gamma"});
  table.add({.pid = 12, .signature = 'AAAA', .name = "Alpha"});
  const std::string foreground =
      "Foreground processes:\nAlpha V1.0 (AAAA/)\nbeta V1.0 (BBBB/)\nGamma V1.0 (CCCC/)\n\n";
  EXPECT_EQ(toBytes([KRProcess processListForDiagnosticsReport]),
            foreground + "Background processes:\nnone\n");
  table.add({.pid = 13,
             .signature = 'DDDD',
             .name = "Agent",
             .information = propertyListText({{"LSUIElement", "1"}})});
  EXPECT_EQ(toBytes([KRProcess processListForDiagnosticsReport]),
            foreground + "Background processes:\nAgent V1.0 (DDDD/)\n");
}

}  // namespace
}  // namespace kr
