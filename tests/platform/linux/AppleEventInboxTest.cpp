#include "platform/linux/AppleEventInbox.h"

#include <gtest/gtest.h>
#include <malloc.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <functional>
#include <future>
#include <thread>
#include <utility>

#include "platform/AppleEvents.h"
#include "platform/SystemServices.h"
#include "platform/linux/AppleEventBus.h"
#include "platform/linux/ProcFS.h"
#include "platform/posix/FileDescriptor.h"
#include "tests/support/BusPeer.h"
#include "tests/support/Child.h"
#include "tests/support/Desktop.h"
#include "tests/support/Eventually.h"
#include "tests/support/ScratchFolder.h"

namespace kr::platform {
namespace {

using kr::testing::BusPeer;
using kr::testing::Desktop;
using kr::testing::receivesEvents;
using kr::testing::ScopedVariable;
using kr::testing::ScratchFolder;
using namespace std::chrono_literals;

constexpr std::uint32_t kClass = 0x53696E53;  // 'SinS'
constexpr std::uint32_t kID = 0x446F6E65;     // 'Done'
constexpr const char* kHandled = "";
constexpr const char* kNotHandled = "org.freedesktop.DBus.Error.NotSupported";

struct Event {
  std::uint32_t eventClass;
  std::uint32_t eventID;
  std::optional<std::string> text;

  friend bool operator==(const Event&, const Event&) = default;
};
using Events = std::vector<Event>;

// Bytes of memory that this process uses.
std::size_t memory() {
  const auto used = ::mallinfo2();
  return used.uordblks + used.hblkhd;
}

class Inbox : public ::testing::Test {
 protected:
  static SerialNumber own() { return procfs::serialNumber(::getpid()).value(); }

  // Runs the inbox until the condition holds, as a run loop does.
  bool run(const std::function<bool()>& condition, double seconds = 10) {
    return kr::testing::eventually(
        [&] {
          if (const auto ready = inbox_.readiness()) {
            pollfd wait{ready->descriptor, static_cast<short>(POLLIN | (ready->write ? POLLOUT : 0)), 0};
            if (::poll(&wait, 1, 5) > 0) inbox_.work(5ms);
          }
          return condition();
        },
        seconds);
  }

  // The inbox runs while another program does something; what that answers.
  template <class Work>
  auto meanwhile(Work work) {
    auto result = std::async(std::launch::async, work);
    EXPECT_TRUE(run([&] { return result.wait_for(0s) == std::future_status::ready; }, 30));
    return result.get();
  }

  void open() {
    inbox_.open();
    EXPECT_TRUE(meanwhile([] { return kr::testing::eventually([] { return receivesEvents(own()); }); }));
  }

  std::string send(GVariant* body) {
    return meanwhile([&] { return BusPeer().send(own(), body); });
  }

  Events events_;
  bool handles_ = true;
  std::chrono::microseconds handlingTime_{0};
  std::function<void()> meanwhile_;  // while the next event is handled
  AppleEventInbox inbox_{
      [this](std::uint32_t eventClass, std::uint32_t eventID, const std::optional<std::string>& text) {
        events_.push_back({eventClass, eventID, text});
        std::this_thread::sleep_for(handlingTime_);
        if (meanwhile_) std::exchange(meanwhile_, nullptr)();
        return handles_;
      }};
};

class InboxOnABus : public Inbox {
 protected:
  Desktop desktop_{{.display = false, .bus = true}};
};

TEST_F(InboxOnABus, AnEventOfOurOwnArrives) {
  open();
  const AppleEvent event{.eventClass = kClass,
                         .eventID = kID,
                         .target = ::getpid(),
                         .directText = "Foo 2.1",
                         .sendMode = 3,
                         .timeoutTicks = 600};
  EXPECT_FALSE(meanwhile([&] { return systemAppleEvents().send(event).has_value(); }));
  EXPECT_EQ(events_, (Events{{kClass, kID, "Foo 2.1"}}));
}

TEST_F(InboxOnABus, EventsComeInTheirOrder) {
  open();
  for (const char* text : {"1", "2", "3"}) EXPECT_EQ(send(BusPeer::event(kClass, kID, {text})), kHandled);
  EXPECT_EQ(events_, (Events{{kClass, kID, "1"}, {kClass, kID, "2"}, {kClass, kID, "3"}}));
}

TEST_F(InboxOnABus, AnEventThatNothingHandlesIsAnsweredSo) {
  handles_ = false;
  open();
  EXPECT_EQ(send(BusPeer::event(1, 2, {"x"})), kNotHandled);
  EXPECT_EQ(events_, (Events{{1, 2, "x"}}));
  AppleEvent event{.eventClass = 1, .eventID = 2, .target = own(), .sendMode = 3, .timeoutTicks = 600};
  const auto error = meanwhile([&] { return systemAppleEvents().send(event); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->status, -1708);
}

TEST_F(InboxOnABus, ATextIsTakenAloneOrAsAListOfOne) {
  open();
  EXPECT_EQ(send(::g_variant_new("(uus)", kClass, kID, "alone")), kHandled);
  EXPECT_EQ(send(BusPeer::event(kClass, kID, {"in a list"})), kHandled);
  EXPECT_EQ(send(BusPeer::event(kClass, kID, {""})), kHandled);
  EXPECT_EQ(events_, (Events{{kClass, kID, "alone"}, {kClass, kID, "in a list"}, {kClass, kID, ""}}));
}

TEST_F(InboxOnABus, ADirectObjectThatIsNoTextGivesNone) {
  open();
  const std::vector<std::string> bodies{
      "(uint32 1, uint32 2)",
      "(uint32 1, uint32 2, @as [])",
      "(uint32 1, uint32 2, ['one', 'two'])",
      "(uint32 1, uint32 2, int32 7)",
      "(uint32 1, uint32 2, b'bytes')",
      "(uint32 1, uint32 2, [int32 1])",
      "(uint32 1, uint32 2, <'text'>)",
      "(uint32 1, uint32 2, objectpath '/text')",
      "(uint32 1, uint32 2, ('text', 1))",
      "(uint32 1, uint32 2, {'text': 'text'})",
      "(uint32 1, uint32 2, [['text']])",
  };
  for (const std::string& body : bodies) {
    EXPECT_EQ(send(::g_variant_new_parsed(body.c_str())), kHandled) << body;
  }
  EXPECT_EQ(events_, Events(bodies.size(), Event{1, 2, std::nullopt}));
}

TEST_F(InboxOnABus, WithoutClassAndIDItIsNoEvent) {
  open();
  for (const char* body : {"()", "(uint32 1,)", "('text',)", "(int32 1, int32 2, ['text'])"}) {
    EXPECT_EQ(send(::g_variant_new_parsed(body)), "org.freedesktop.DBus.Error.InvalidArgs") << body;
  }
  EXPECT_EQ(events_, Events{});
}

TEST_F(InboxOnABus, OtherObjectsInterfacesAndMethodsAreRefused) {
  open();
  const auto call = [](const char* path, const char* interface, const char* method) {
    return BusPeer().sendTo(path, interface, method, own(), BusPeer::event(kClass, kID, {"x"}));
  };
  using namespace applebus;
  EXPECT_NE(meanwhile([&] { return call("/elsewhere", kInterface, kMethod); }), kHandled);
  EXPECT_NE(meanwhile([&] { return call(kObjectPath, "org.velmora.Other", kMethod); }), kHandled);
  EXPECT_NE(meanwhile([&] { return call(kObjectPath, kInterface, "Receive"); }), kHandled);
  EXPECT_EQ(events_, Events{});
}

TEST_F(InboxOnABus, AnEventToAnotherProcessOrAnEarlierOneOfThisIDDoesNotArrive) {
  open();
  const SerialNumber earlier{own().high - 1, own().low};
  EXPECT_EQ(meanwhile([&] { return BusPeer().send(earlier, BusPeer::event(kClass, kID, {"x"})); }),
            "org.freedesktop.DBus.Error.NameHasNoOwner");
  EXPECT_EQ(events_, Events{});
}

TEST_F(InboxOnABus, ATextOfAMegabyteArrivesWhole) {
  open();
  const std::string text(1 << 20, 'x');
  EXPECT_EQ(send(BusPeer::event(kClass, kID, {text})), kHandled);
  ASSERT_EQ(events_.size(), 1U);
  EXPECT_EQ(events_[0].text, text);
}

TEST_F(InboxOnABus, TextThatIsNotUTF8DoesNotArriveAndEndsNothing) {
  open();
  EXPECT_TRUE(
      meanwhile([] { return BusPeer::sendInvalidText(own(), BusPeer::event(kClass, kID, {"aXb"})); }));
  EXPECT_EQ(send(BusPeer::event(kClass, kID, {"next"})), kHandled);
  EXPECT_EQ(events_, (Events{{kClass, kID, "next"}}));
}

TEST_F(InboxOnABus, AFloodIsTakenInTurnsAndKeptOutOfMemory) {
  constexpr int kCount = 5'000;
  handlingTime_ = 100us;  // as long as logging and showing something takes
  open();
  const std::size_t before = memory();
  std::size_t most = before;
  kr::testing::Child flood({KR_EVENT_FLOOD, std::to_string(::getpid()), std::to_string(kClass),
                            std::to_string(kID), std::string(2000, 'x'), std::to_string(kCount)});
  EXPECT_EQ(flood.wait(30), 0) << "whoever sends does not wait for who receives";
  int received = 0;
  int turns = 0;
  EXPECT_TRUE(kr::testing::eventually(
      [&] {
        inbox_.work(5ms);
        received += static_cast<int>(events_.size());
        events_.clear();
        most = std::max(most, memory());
        ++turns;
        return received == kCount;
      },
      60));
  EXPECT_GT(turns, 50) << "a turn is short";
  EXPECT_LT(most - before, 4UL << 20) << "of the 10 megabytes that were sent";
}

// As when the handler opens an alert, which runs a loop of its own.
TEST_F(InboxOnABus, WhatComesWhileAnEventIsHandledIsTakenAfterIt) {
  open();
  const AppleEvent event{
      .eventClass = kClass, .eventID = kID, .target = own(), .directText = "second", .sendMode = 1};
  std::size_t seenByTheHandler = 0;
  meanwhile_ = [&] {
    EXPECT_FALSE(systemAppleEvents().send(event));
    EXPECT_FALSE(inbox_.readiness()) << "a loop would be woken again and again";
    inbox_.work(5ms);
    seenByTheHandler = events_.size();
  };
  EXPECT_EQ(send(BusPeer::event(kClass, kID, {"first"})), kHandled);
  EXPECT_TRUE(run([&] { return events_.size() == 2; }));
  EXPECT_EQ(seenByTheHandler, 1U);
  EXPECT_EQ(events_, (Events{{kClass, kID, "first"}, {kClass, kID, "second"}}));
  EXPECT_EQ(send(BusPeer::event(kClass, kID, {"third"})), kHandled);
}

TEST_F(InboxOnABus, TheEndOfTheBusEndsTheInboxAndNothingElse) {
  open();
  desktop_.stopBus();
  EXPECT_TRUE(run([&] { return !inbox_.readiness(); }));
  inbox_.work(5ms);
}

TEST_F(Inbox, WithoutABusThereIsNothingToWaitFor) {
  const Desktop none({.display = false});
  inbox_.open();
  EXPECT_FALSE(inbox_.readiness());
  inbox_.work(5ms);
}

TEST_F(Inbox, AnAddressWhereNobodyListensIsNoBus) {
  const Desktop none({.display = false});
  for (const char* address : {"unix:path=/nowhere/bus", "no address", "tcp:host=,port=x"}) {
    const ScopedVariable variable("DBUS_SESSION_BUS_ADDRESS", address);
    inbox_.open();
    EXPECT_FALSE(inbox_.readiness()) << address;
  }
}

TEST_F(Inbox, ABusThatDoesNotAnswerHoldsNothingUp) {
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
  const auto start = std::chrono::steady_clock::now();
  inbox_.open();
  inbox_.work(5ms);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 500ms);
  EXPECT_TRUE(inbox_.readiness());
  EXPECT_FALSE(inbox_.readiness()->write) << "a loop that waits for it would never rest";
}

}  // namespace
}  // namespace kr::platform
