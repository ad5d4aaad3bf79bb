#include "platform/AppleEvents.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstring>

#include "platform/SystemServices.h"
#include "platform/linux/AppleEventBus.h"
#include "platform/linux/ProcFS.h"
#include "platform/posix/FileDescriptor.h"
#include "tests/support/Desktop.h"
#include "tests/support/EventReceiver.h"
#include "tests/support/Eventually.h"

namespace kr::platform {
namespace {

using kr::testing::Desktop;
using kr::testing::EventAnswer;
using kr::testing::EventReceiver;
using kr::testing::eventually;
using kr::testing::ReceivedEvent;
using kr::testing::ScopedVariable;
using kr::testing::ScratchFolder;
using Received = std::vector<ReceivedEvent>;

constexpr std::uint32_t kClass = 0x53696E53;  // 'SinS'
constexpr std::uint32_t kID = 0x446F6E65;     // 'Done'
constexpr std::int32_t kNoReply = 1;
constexpr std::int32_t kWait = 3;

class AppleEventsTest : public ::testing::Test {
 protected:
  static SerialNumber own() { return procfs::serialNumber(::getpid()).value(); }

  AppleEvent event(std::int32_t mode, std::int32_t ticks = 600) {
    return {.eventClass = kClass,
            .eventID = kID,
            .target = own(),
            .directText = "P 1.0",
            .sendMode = mode,
            .timeoutTicks = ticks};
  }

  // The status of sending; 0 for success.
  std::int32_t send(const AppleEvent& what) {
    const std::optional<AppleEventError> error = systemAppleEvents().send(what);
    if (error) EXPECT_EQ(error->step, AppleEventError::Step::send);
    return error ? error->status : 0;
  }

  template <class Code>
  static double seconds(Code code) {
    const auto start = std::chrono::steady_clock::now();
    code();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  }
};

class AppleEventsOnABus : public AppleEventsTest {
 protected:
  Desktop desktop{{.display = false, .bus = true}};
};

TEST_F(AppleEventsTest, TheBusNameHoldsProcessIDAndStart) {
  EXPECT_EQ(applebus::busName({.high = 176749, .low = 12}), "org.velmora.AppleEvents.p12_176749");
}

TEST_F(AppleEventsOnABus, AnEventArrivesWithClassIDAndText) {
  EventReceiver receiver(own());
  EXPECT_EQ(send(event(kNoReply)), 0);
  ASSERT_TRUE(eventually([&] { return receiver.received().size() == 1; }));
  EXPECT_EQ(receiver.received(), (Received{{kClass, kID, {"P 1.0"}, false}}));
}

TEST_F(AppleEventsOnABus, AnEventWithoutTextArrivesWithoutOne) {
  EventReceiver receiver(own());
  AppleEvent plain = event(0x1010, 0);
  plain.directText.reset();
  EXPECT_EQ(send(plain), 0);
  ASSERT_TRUE(eventually([&] { return receiver.received().size() == 1; }));
  EXPECT_EQ(receiver.received(), (Received{{kClass, kID, {}, false}}));
}

TEST_F(AppleEventsOnABus, AProcessIDIsAsGoodAsASerialNumber) {
  EventReceiver receiver(own());
  AppleEvent byID = event(kNoReply);
  byID.target = ::getpid();
  EXPECT_EQ(send(byID), 0);
  EXPECT_TRUE(eventually([&] { return receiver.received().size() == 1; }));
}

TEST_F(AppleEventsOnABus, BytesThatAreNoTextDoNotCutTheConnection) {
  EventReceiver receiver(own());
  AppleEvent odd = event(kNoReply);
  odd.directText =
      "a\xFF"
      "b";
  EXPECT_EQ(send(odd), 0);
  EXPECT_EQ(send(event(kNoReply)), 0);
  ASSERT_TRUE(eventually([&] { return receiver.received().size() == 2; }));
  EXPECT_EQ(receiver.received()[0].directTexts, std::vector<std::string>{"a\xEF\xBF\xBD"
                                                                         "b"});
}

TEST_F(AppleEventsOnABus, AWaitingEventWantsAReply) {
  EventReceiver receiver(own());
  EXPECT_EQ(send(event(kWait)), 0);
  EXPECT_EQ(receiver.received(), (Received{{kClass, kID, {"P 1.0"}, true}}));
  EXPECT_EQ(send(event(0x3093)), 0);
  EXPECT_EQ(send(event(kWait, -1)), 0);
  EXPECT_EQ(send(event(kWait, -2)), 0);
  EXPECT_EQ(receiver.received().size(), 4U);
}

TEST_F(AppleEventsOnABus, NobodyUnderTheNameIsNoSuchProcess) {
  EXPECT_EQ(send(event(kNoReply)), -600);
  EXPECT_EQ(send(event(kWait)), -600);
}

TEST_F(AppleEventsOnABus, AnEarlierProcessWithTheSameIDIsNoSuchProcess) {
  EventReceiver receiver(own());
  AppleEvent other = event(kNoReply);
  other.target = SerialNumber{own().high - 1, own().low};
  EXPECT_EQ(send(other), -600);
  EXPECT_TRUE(receiver.received().empty());
}

TEST_F(AppleEventsOnABus, AProcessIDThatNobodyHasIsNoSuchProcess) {
  for (const pid_t pid : {0, 4194305}) {
    AppleEvent nobody = event(kNoReply);
    nobody.target = pid;
    EXPECT_EQ(send(nobody), -600) << pid;
  }
}

TEST_F(AppleEventsOnABus, AReplyThatDoesNotComeInTimeIsATimeOut) {
  EventReceiver receiver(own(), EventAnswer::never);
  std::int32_t status = 0;
  const double waited = seconds([&] { status = send(event(kWait, 30)); });
  EXPECT_EQ(status, -1712);
  EXPECT_NEAR(waited, 0.5, 0.3);
  EXPECT_EQ(send(event(kWait, 0)), -1712);
  // The second one may be under way when the sender has given up.
  EXPECT_TRUE(eventually([&] { return receiver.received().size() == 2; }));
}

TEST_F(AppleEventsOnABus, NoReplyIsNotWaitedFor) {
  EventReceiver receiver(own(), EventAnswer::never);
  EXPECT_LT(seconds([&] { EXPECT_EQ(send(event(kNoReply)), 0); }), 1.0);
}

TEST_F(AppleEventsOnABus, ARefusedEventWasNotHandled) {
  EventReceiver receiver(own(), EventAnswer::refused);
  EXPECT_EQ(send(event(kWait)), -1708);
  EXPECT_EQ(send(event(kNoReply)), 0);
}

TEST_F(AppleEventsOnABus, TheEndOfTheBusEndsNeitherTheProgramNorLaterSending) {
  EXPECT_EQ(send(event(kNoReply)), -600);
  desktop.stopBus();
  EXPECT_TRUE(eventually([&] { return send(event(kNoReply)) == -609; }));
  const Desktop next({.display = false, .bus = true});
  EventReceiver receiver(own());
  EXPECT_EQ(send(event(kNoReply)), 0);
}

TEST_F(AppleEventsTest, WithoutABusTheConnectionIsInvalid) {
  const Desktop none({.display = false});
  EXPECT_EQ(send(event(kNoReply)), -609);
  EXPECT_EQ(send(event(kWait)), -609);
}

TEST_F(AppleEventsTest, AnAddressWhereNobodyListensIsNoBus) {
  const Desktop none({.display = false});
  const ScopedVariable address("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/bus");
  EXPECT_LT(seconds([&] { EXPECT_EQ(send(event(kNoReply)), -609); }), 1.0);
}

TEST_F(AppleEventsTest, ABusThatDoesNotAnswerIsGivenUp) {
  const Desktop none({.display = false});
  const ScratchFolder folder;
  const std::string path = folder / "silent";
  const posix::FileDescriptor listener(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_un place{};
  place.sun_family = AF_UNIX;
  std::strncpy(place.sun_path, path.c_str(), sizeof place.sun_path - 1);
  ASSERT_EQ(::bind(listener.get(), reinterpret_cast<const sockaddr*>(&place), sizeof place), 0);
  ASSERT_EQ(::listen(listener.get(), 4), 0);
  const ScopedVariable address("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + path);
  const double waited = seconds([&] { EXPECT_EQ(send(event(kNoReply)), -609); });
  EXPECT_GT(waited, 1.5);
  EXPECT_LT(waited, 4.0);
}

}  // namespace
}  // namespace kr::platform
