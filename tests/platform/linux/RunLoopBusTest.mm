#include "platform/linux/RunLoopBus.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <optional>

#include "platform/linux/RunLoopSource.h"
#include "platform/posix/FileDescriptor.h"
#import "tests/support/RunLoop.h"

namespace kr::platform {
namespace {

using kr::testing::eventuallyInRunLoop;
using kr::testing::runLoop;

struct Pair {
  Pair() {
    int ends[2];
    EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
    near = posix::FileDescriptor(ends[0]);
    far = posix::FileDescriptor(ends[1]);
  }
  void send() const { EXPECT_EQ(::write(far.get(), "x", 1), 1); }

  posix::FileDescriptor near;
  posix::FileDescriptor far;
};

// A connection whose work is to read a byte.
class RunLoopBusConnection : public ::testing::Test {
 protected:
  void work() {
    char byte = 0;
    bytes_ += static_cast<int>(::recv(pair_.near.get(), &byte, 1, MSG_DONTWAIT) == 1);
    ++works_;
    if (readiness_) readiness_->write = false;
  }

  Pair pair_;
  std::optional<BusReadiness> readiness_{{.descriptor = pair_.near.get(), .write = false}};
  int works_ = 0;
  int bytes_ = 0;
  std::optional<RunLoopBus> bus_{std::in_place, [this] { return readiness_; }, [this] { work(); }};
};

TEST_F(RunLoopBusConnection, WorksWhenThereIsSomethingToRead) {
  pair_.send();
  EXPECT_TRUE(eventuallyInRunLoop([&] { return bytes_ == 1; }));
  pair_.send();
  EXPECT_TRUE(eventuallyInRunLoop([&] { return bytes_ == 2; }));
}

TEST_F(RunLoopBusConnection, IsLookedAtAgainWhenItWantsToWrite) {
  readiness_->write = true;
  bus_->refresh();
  EXPECT_TRUE(eventuallyInRunLoop([&] { return works_ == 1; }));
  runLoop(0.1);
  EXPECT_EQ(works_, 1) << "it does not want to any more";
}

TEST_F(RunLoopBusConnection, ThatHasEndedIsNotWatched) {
  pair_.send();
  readiness_ = std::nullopt;
  bus_->refresh();
  runLoop(0.1);
  EXPECT_EQ(works_, 0);
}

TEST_F(RunLoopBusConnection, LeavesTheNumberOfItsDescriptorToAnother) {
  Pair other;
  const int number = pair_.near.get();
  ASSERT_EQ(::dup2(other.near.get(), number), number);
  int heard = 0;
  const RunLoopSource source(number, [&] {
    char byte = 0;
    heard += static_cast<int>(::read(number, &byte, 1) == 1);
  });
  bus_.reset();
  other.send();
  EXPECT_TRUE(eventuallyInRunLoop([&] { return heard == 1; }));
}

}  // namespace
}  // namespace kr::platform
