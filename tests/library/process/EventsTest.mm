#import "tests/library/process/ProcessFixture.h"

namespace kr {
namespace {

using platform::AppleEvent;
using platform::AppleEventError;
using platform::SerialNumber;
using platform::testing::WindowRequest;
using testing::Lines;
using testing::ProcessFixture;

using Target = std::variant<pid_t, SerialNumber>;
constexpr uint32_t kClass = 'SinS';
constexpr uint32_t kID = 'Done';

class Events : public ProcessFixture {
 protected:
  void answer(AppleEventError::Step step) { events.answer = AppleEventError{step, -609}; }
};

TEST_F(Events, APlainEventGoesToTheProcessIDAndIsNotWaitedFor) {
  [object({.pid = 10}) sendAppleEventClass:kClass eventID:kID];
  ASSERT_EQ(events.sent.size(), 1U);
  const AppleEvent& event = events.sent.front();
  EXPECT_EQ(event.eventClass, kClass);
  EXPECT_EQ(event.eventID, kID);
  EXPECT_EQ(event.target, Target(pid_t{10}));
  EXPECT_EQ(event.directText, std::nullopt);
  EXPECT_EQ(event.sendMode, 0x1010);
  EXPECT_EQ(event.timeoutTicks, 0);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(Events, AProcessWithoutIDIsStillSentTo) {
  answer(AppleEventError::Step::send);
  [[KRProcess processWithSerialNumber:{99999, 10}] sendAppleEventClass:kClass eventID:kID];
  ASSERT_EQ(events.sent.size(), 1U);
  EXPECT_EQ(events.sent.front().target, Target(pid_t{0}));
  EXPECT_EQ(log.lines(), Lines{"*** event error: -609"});
}

TEST_F(Events, AnErrorInBuildingIsNotLogged) {
  KRProcess* process = object({.pid = 10});
  answer(AppleEventError::Step::build);
  [process sendAppleEventClass:kClass eventID:kID];
  [process sendAppleEventClass:kClass eventID:kID timeout:1.0F];
  [process sendAppleEventClass:kClass eventID:kID parameter:@"x"];
  answer(AppleEventError::Step::address);
  [process sendAppleEventClass:kClass eventID:kID];
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(Events, AWaitingEventTakesItsTimeInTicks) {
  [object({.pid = 10}) sendAppleEventClass:kClass eventID:kID timeout:0.5F];
  ASSERT_EQ(events.sent.size(), 1U);
  const AppleEvent& event = events.sent.front();
  EXPECT_EQ(event.target, Target(pid_t{10}));
  EXPECT_EQ(event.sendMode, 0x3093);
  EXPECT_EQ(event.timeoutTicks, 30);
  EXPECT_EQ(event.directText, std::nullopt);
}

TEST_F(Events, AnErrorInAWaitingEventIsLogged) {
  answer(AppleEventError::Step::send);
  [object({.pid = 10}) sendAppleEventClass:kClass eventID:kID timeout:0.01F];
  EXPECT_EQ(events.sent.front().timeoutTicks, 0);
  EXPECT_EQ(log.lines(), Lines{"*** event error: -609"});
}

TEST_F(Events, AWaitingEventReadsTheLoadOfTheFrontProcessBeforeAndAfter) {
  KRProcess* front = object({.pid = 20, .userTime = "0:01.00"});
  order.inFront = [front serialNumber];
  std::vector<pid_t> before;
  events.onSend = [&](const AppleEvent&) { before = table.userTimeCalls(); };
  [object({.pid = 10}) sendAppleEventClass:kClass eventID:kID timeout:1.0F];
  EXPECT_EQ(before, std::vector<pid_t>{20});
  EXPECT_EQ(table.userTimeCalls(), (std::vector<pid_t>{20, 20}));
}

TEST_F(Events, ATextGoesToTheSerialNumberAndErrorsAreIgnored) {
  const SerialNumber serial = table.add({.pid = 10});
  answer(AppleEventError::Step::send);
  [[KRProcess processWithSerialNumber:serial] sendAppleEventClass:kClass
                                                          eventID:kID
                                                        parameter:@"Product 1.0 \u00E4"];
  ASSERT_EQ(events.sent.size(), 1U);
  const AppleEvent& event = events.sent.front();
  EXPECT_EQ(event.eventClass, kClass);
  EXPECT_EQ(event.eventID, kID);
  EXPECT_EQ(event.target, Target(serial));
  EXPECT_EQ(event.directText, "Product 1.0 \xC3\xA4");
  EXPECT_EQ(event.sendMode, 49);
  EXPECT_EQ(event.sendPriority, 0);
  EXPECT_EQ(event.timeoutTicks, 30);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(Events, WithoutATextThereIsNoEvent) {
  [object({.pid = 10}) sendAppleEventClass:kClass eventID:kID parameter:nil];
  EXPECT_TRUE(events.sent.empty());
}

class Front : public ProcessFixture {};

TEST_F(Front, RequestsAreForTheProcessItself) {
  const SerialNumber serial = table.add({.pid = 10});
  KRProcess* process = [KRProcess processWithSerialNumber:serial];
  [process setFrontProcess];
  [process setFrontProcessFrontWindowOnly];
  [process setHidden:YES];
  [process setHidden:NO];
  [process wakeUp];
  using Kind = WindowRequest::Kind;
  EXPECT_EQ(order.requests, (std::vector<WindowRequest>{{Kind::front, serial},
                                                        {Kind::frontWindowOnly, serial},
                                                        {Kind::hide, serial},
                                                        {Kind::show, serial},
                                                        {Kind::wake, serial}}));
}

TEST_F(Front, TemporarilySwitchingOutPassesThroughTheRunningProgram) {
  const SerialNumber own = addCurrent();
  const SerialNumber serial = table.add({.pid = 10});
  [[KRProcess processWithSerialNumber:serial] temporarilySwitchOut];
  using Kind = WindowRequest::Kind;
  EXPECT_EQ(order.requests, (std::vector<WindowRequest>{
                                {Kind::front, own}, {Kind::frontWindowOnly, serial}, {Kind::wake, serial}}));
}

}  // namespace
}  // namespace kr
