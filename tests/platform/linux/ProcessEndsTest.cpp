#include "platform/linux/ProcessEnds.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/linux/ProcFS.h"
#include "tests/support/Child.h"
#include "tests/support/Eventually.h"
#include "tests/support/Forked.h"

namespace kr::platform {
namespace {

using kr::testing::Child;
using kr::testing::eventually;
using kr::testing::inChild;
using Processes = std::vector<SerialNumber>;

Child start() {
  return Child({"sleep", "600"});
}

SerialNumber serial(const Child& child) {
  return procfs::serialNumber(child.pid()).value();
}

bool isReadable(const ProcessEnds& ends) {
  pollfd wait{ends.descriptor(), POLLIN, 0};
  return ::poll(&wait, 1, 0) == 1;
}

TEST(ProcessEnds, AreToldOnceEach) {
  ProcessEnds ends;
  Child one = start();
  Child two = start();
  EXPECT_TRUE(ends.watch(serial(one)));
  EXPECT_TRUE(ends.watch(serial(two)));
  EXPECT_FALSE(isReadable(ends));
  EXPECT_EQ(ends.takeEnded(), Processes{});
  const SerialNumber first = serial(one);
  one.signal(SIGKILL);
  EXPECT_TRUE(eventually([&] { return isReadable(ends); }));
  EXPECT_EQ(ends.takeEnded(), Processes{first});
  EXPECT_FALSE(isReadable(ends));
  EXPECT_EQ(ends.takeEnded(), Processes{});
}

TEST(ProcessEnds, OfAProcessAreWatchedOnce) {
  ProcessEnds ends;
  const Child child = start();
  EXPECT_FALSE(ends.isWatched(child.pid()));
  EXPECT_TRUE(ends.watch(serial(child)));
  EXPECT_FALSE(ends.watch(serial(child)));
  EXPECT_TRUE(ends.isWatched(child.pid()));
}

TEST(ProcessEnds, OfAProcessThatHasEndedOrWasAnotherAreNotWatched) {
  ProcessEnds ends;
  Child child = start();
  const SerialNumber process = serial(child);
  EXPECT_FALSE(ends.watch({process.high - 1, process.low}));
  child.signal(SIGKILL);
  ASSERT_TRUE(eventually([&] { return !procfs::runningProcessID(process); }));
  EXPECT_FALSE(ends.watch(process)) << "not reaped yet";
  ASSERT_TRUE(child.wait(5.0));
  EXPECT_FALSE(ends.watch(process));
  EXPECT_FALSE(ends.isWatched(static_cast<pid_t>(process.low)));
}

TEST(ProcessEnds, BeyondTheLimitAreFoundOutWhenAsked) {
  ProcessEnds ends(1);
  Child held = start();
  Child other = start();
  EXPECT_TRUE(ends.watch(serial(held)));
  EXPECT_TRUE(ends.watch(serial(other)));
  EXPECT_FALSE(ends.watch(serial(other)));
  const SerialNumber process = serial(other);
  other.signal(SIGKILL);
  ASSERT_TRUE(other.wait(5.0));
  EXPECT_FALSE(isReadable(ends));
  EXPECT_EQ(ends.takeEnded(), Processes{process});
  EXPECT_FALSE(ends.isWatched(static_cast<pid_t>(process.low)));
}

TEST(ProcessEnds, OfMoreProcessesThanComeAtOnceAreAllTold) {
  ProcessEnds ends;
  std::vector<Child> many;
  for (int index = 0; index < 150; ++index) {
    many.push_back(start());
    ASSERT_TRUE(ends.watch(serial(many.back())));
  }
  for (const Child& child : many) child.signal(SIGKILL);
  std::size_t told = 0;
  EXPECT_TRUE(eventually([&] { return (told += ends.takeEnded().size()) == many.size(); })) << told;
}

TEST(ProcessEnds, TakeNoMoreThanHalfOfTheDescriptorsOfTheProgram) {
  EXPECT_EQ(inChild([] {
              const rlimit limit{64, 64};
              if (::setrlimit(RLIMIT_NOFILE, &limit) != 0) return 1;
              ProcessEnds ends;
              std::vector<Child> many;
              for (int index = 0; index < 60; ++index) {
                many.push_back(start());
                if (!ends.watch(serial(many.back()))) return 2;
              }
              // There are some left for everybody else.
              const int free = ::dup(0);
              if (free < 0 || free > 48) return 3;
              for (const Child& child : many) child.signal(SIGKILL);
              std::size_t told = 0;
              return eventually([&] { return (told += ends.takeEnded().size()) == 60; }) ? 0 : 4;
            }),
            0);
}

TEST(ProcessEnds, AreFoundOutWhereTheKernelHandsOutNoDescriptor) {
  EXPECT_EQ(inChild([] {
              kr::testing::failSystemCall(SYS_pidfd_open, EPERM);
              ProcessEnds ends;
              Child child = start();
              if (!ends.watch(serial(child)) || ends.watch(serial(child))) return 1;
              const SerialNumber process = serial(child);
              child.signal(SIGKILL);
              if (!child.wait(5.0)) return 2;
              return ends.takeEnded() == Processes{process} ? 0 : 3;
            }),
            0);
}

}  // namespace
}  // namespace kr::platform
