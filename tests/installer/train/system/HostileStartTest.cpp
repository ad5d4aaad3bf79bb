// The tool does the same whatever it was started with.
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "tests/installer/train/system/TrainTest.h"

namespace kr::testing {
namespace {

class TrainStartedHostilely : public TrainTest {
 protected:
  TrainStartedHostilely() : source_(product("P.app", "new")), expected_(installed(source_)) {
    product("to/P.app", "old");
  }

  void expectInstalled(const std::function<void()>& prepare) {
    EXPECT_EQ(run({source_, destination_}, prepare), Status::installed) << errors;
    EXPECT_EQ(errors, "");
    EXPECT_EQ(fileTree(destination_), expected_);
    EXPECT_EQ(entries(to_), Lines{"P.app"});
  }

  // With less than it needs it may fail, but leaves a whole product.
  void expectInstalledOrUnchanged(const std::function<void()>& prepare) {
    const FileTree before = fileTree(destination_);
    const auto status = run({source_, destination_}, prepare);
    EXPECT_EQ(fileTree(destination_), status == Status::installed ? expected_ : before) << errors;
    EXPECT_EQ(run({source_, destination_}), Status::installed) << errors;
    EXPECT_EQ(entries(to_), Lines{"P.app"});
  }

  const std::string source_;
  const FileTree expected_;
};

void limit(decltype(RLIMIT_AS) resource, rlim_t soft, rlim_t hard) {
  rlimit old{};
  ::getrlimit(resource, &old);
  const rlimit small{std::min(soft, old.rlim_max), std::min(hard, old.rlim_max)};
  ::setrlimit(resource, &small);
}

TEST_F(TrainStartedHostilely, WithAnyMask) {
  for (const mode_t mask : {0000, 0777}) {
    expectInstalled([&] { ::umask(mask); });
  }
}

TEST_F(TrainStartedHostilely, WithoutStandardStreams) {
  expectInstalled([] {
    for (const int stream : {0, 1, 2}) ::close(stream);
  });
  // Its first line must not go into the first file that it opens.
  const FileTree before = fileTree(scratch_.path());
  EXPECT_EQ(run({source_, to_},
                [] {
                  for (const int stream : {0, 1, 2}) ::close(stream);
                }),
            Status::destinationRefused);
  EXPECT_EQ(fileTree(scratch_.path()), before);
}

TEST_F(TrainStartedHostilely, WithAHostileEnvironment) {
  expectInstalled([&] {
    for (const auto& [name, value] :
         std::vector<std::pair<const char*, std::string>>{{"PATH", to_},
                                                          {"TMPDIR", to_},
                                                          {"HOME", to_},
                                                          {"LANG", "xx_YY"},
                                                          {"LC_ALL", "xx_YY"},
                                                          {"IFS", "/"},
                                                          {"MALLOC_CHECK_", "3"},
                                                          {"MALLOC_ARENA_MAX", "x"}}) {
      ::setenv(name, value.c_str(), 1);
    }
  });
}

// A program that a sanitizer watches loads the sanitizer.
#if !__has_feature(address_sanitizer)
TEST_F(TrainStartedHostilely, WithLibrariesToLoad) {
  // Whatever loads libraries says on standard error that there is no such one.
  expectInstalled([] {
    ::setenv("LD_PRELOAD", "/nowhere/hostile.so", 1);
    ::setenv("LD_AUDIT", "/nowhere/hostile.so", 1);
    ::setenv("LD_LIBRARY_PATH", "/nowhere", 1);
  });
}
#endif

TEST_F(TrainStartedHostilely, WithSignalsBlockedAndIgnored) {
  expectInstalled([] {
    sigset_t all;
    sigfillset(&all);
    ::sigprocmask(SIG_SETMASK, &all, nullptr);
    for (int number = 1; number < 32; ++number) ::signal(number, SIG_IGN);
  });
}

TEST_F(TrainStartedHostilely, WithAClosedPipeForItsLines) {
  EXPECT_EQ(run({source_, to_},
                [] {
                  int ends[2] = {};
                  if (::pipe(ends) != 0) ::_exit(98);
                  ::dup2(ends[1], 2);
                  ::close(ends[0]);
                  ::close(ends[1]);
                }),
            Status::destinationRefused);
}

TEST_F(TrainStartedHostilely, WithLimitsThatItMayWiden) {
  expectInstalled([] {
    limit(RLIMIT_NOFILE, 8, RLIM_INFINITY);
    limit(RLIMIT_FSIZE, 1000, RLIM_INFINITY);
    limit(RLIMIT_STACK, 128UL << 10, RLIM_INFINITY);
  });
}

TEST_F(TrainStartedHostilely, WithLimitsThatOnlyRootMayWiden) {
  expectInstalledOrUnchanged([] { limit(RLIMIT_FSIZE, 1000, 1000); });
  expectInstalledOrUnchanged([] { limit(RLIMIT_NOFILE, 8, 8); });
  expectInstalledOrUnchanged([] { limit(RLIMIT_STACK, 128UL << 10, 128UL << 10); });
  expectInstalledOrUnchanged([] { limit(RLIMIT_AS, 3UL << 20, 3UL << 20); });
  expectInstalledOrUnchanged([] { limit(RLIMIT_NPROC, 0, 0); });
}

TEST_F(TrainStartedHostilely, WithTheRightsOfRootThatItCannotMakeItsOwn) {
  watchesStart = true;
  const std::vector<long> kinds{SYS_setgroups, SYS_setgid, SYS_setuid};
  for (const long kind : kinds) {
    int calls = 0;
    const FileTree before = fileTree(scratch_.path());
    const auto status = runWatched({source_, destination_}, kinds, [&](const WatchedCall& call) {
      ++calls;
      return call.number == kind ? Verdict::fail(EPERM) : Verdict::pass();
    });
    if (::geteuid() == 0) {
      EXPECT_EQ(status, Status::unsettled) << kind;
      EXPECT_TRUE(errors.starts_with("train: " + std::string(train::meaning(Status::unsettled)))) << errors;
      EXPECT_EQ(fileTree(scratch_.path()), before);
    } else {
      EXPECT_EQ(status, Status::installed) << errors;
      EXPECT_EQ(calls, 0);
    }
  }
}

TEST_F(TrainStartedHostilely, InAFolderThatHasGone) {
  expectInstalled([&] {
    const std::string gone = scratch_ / "gone";
    if (::mkdir(gone.c_str(), 0700) != 0 || ::chdir(gone.c_str()) != 0 || ::rmdir(gone.c_str()) != 0)
      ::_exit(98);
  });
}

}  // namespace
}  // namespace kr::testing
