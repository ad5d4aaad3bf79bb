#include "platform/posix/Pipe.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>

#include "tests/support/Forked.h"

namespace kr::posix {
namespace {

using kr::testing::inChild;

TEST(APipe, HasTwoEnds) {
  Pipe pipe;
  ASSERT_FALSE(makePipe(pipe));
  ASSERT_EQ(::write(pipe.writing.get(), "ab", 2), 2);
  pipe.writing.reset();
  char bytes[3] = "";
  EXPECT_EQ(::read(pipe.reading.get(), bytes, 3), 2);
  EXPECT_STREQ(bytes, "ab");
  EXPECT_EQ(::read(pipe.reading.get(), bytes, 3), 0);
}

TEST(APipe, IsNotOpenInProgramsThatAreStarted) {
  Pipe pipe;
  ASSERT_FALSE(makePipe(pipe));
  for (const FileDescriptor* end : {&pipe.reading, &pipe.writing}) {
    EXPECT_EQ(::fcntl(end->get(), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
  }
}

TEST(APipe, IsMadeSoAtOnce) {
  EXPECT_EQ(inChild([] {
              kr::testing::dieAtSystemCall(SYS_fcntl);
              Pipe pipe;
              return makePipe(pipe) ? 1 : 0;
            }),
            0)
      << "a thread that starts a program in between would hand it on";
}

TEST(APipe, MayBeRefused) {
  EXPECT_EQ(inChild([] {
              kr::testing::failSystemCall(SYS_pipe2, EMFILE);
              Pipe pipe;
              const bool isRefused = makePipe(pipe).value() == EMFILE;
              return isRefused && !pipe.reading && !pipe.writing ? 0 : 1;
            }),
            0);
}

}  // namespace
}  // namespace kr::posix
