#include "installer/LogRedirection.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <functional>

#include "platform/posix/Files.h"
#include "tests/support/ScratchFolder.h"

namespace kr {
namespace {

// Redirected streams stay redirected, so each case runs in a child process.
int inChild(const std::function<void()>& body) {
  const pid_t child = ::fork();
  if (child == 0) {
    body();
    std::fflush(nullptr);
    ::_exit(0);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  return status;
}

TEST(LogRedirection, BothStreamsAreAppendedToTheLogWhoseFolderIsMadeFirst) {
  const kr::testing::ScratchFolder home;
  for (const char* word : {"first", "second"}) {
    ASSERT_EQ(inChild([&] {
                redirectStandardStreams(home.path());
                std::fprintf(stdout, "%s out\n", word);
                std::fprintf(stderr, "%s err\n", word);
              }),
              0);
  }
  EXPECT_EQ(kr::testing::readFile(home / "Library/Logs/VelmoraInstaller.log"),
            "first out\nfirst err\nsecond out\nsecond err\n");
}

TEST(LogRedirection, AStreamWhoseLogCannotBeOpenedGoesNowhere) {
  const kr::testing::ScratchFolder home;
  home.file("Library", "a file in place of the folder");
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  ASSERT_EQ(inChild([&] {
              ::dup2(ends[1], STDERR_FILENO);
              redirectStandardStreams(home.path());
              std::fprintf(stderr, "lost\n");
              std::fprintf(stdout, "lost\n");
            }),
            0);
  ::close(ends[1]);
  char byte = 0;
  EXPECT_EQ(::read(ends[0], &byte, 1), 0) << "nothing reaches the stream that was there before";
  ::close(ends[0]);
  EXPECT_EQ(kr::testing::readFile(home / "Library"), "a file in place of the folder");
}

}  // namespace
}  // namespace kr
