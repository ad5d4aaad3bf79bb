#include "installer/train/Surroundings.h"

#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <string>

#include "tests/support/Forked.h"

namespace kr::train {
namespace {

// What `works` answers in a process that was prepared and then settled.
bool settled(const std::function<void()>& prepare, const std::function<bool()>& works) {
  const int status = kr::testing::inChild([&] {
    prepare();
    if (!settle()) return 2;
    return works() ? 0 : 1;
  });
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(Surroundings, ClosedStandardStreamsAreOpenedOnNothing) {
  EXPECT_TRUE(settled(
      [] {
        for (const int stream : {0, 1, 2}) ::close(stream);
      },
      [] {
        for (const int stream : {0, 1, 2}) {
          char path[PATH_MAX] = {};
          if (::readlink(("/proc/self/fd/" + std::to_string(stream)).c_str(), path, sizeof path - 1) < 0) {
            return false;
          }
          if (std::string(path) != "/dev/null") return false;
        }
        return true;
      }));
}

TEST(Surroundings, OpenStandardStreamsStay) {
  EXPECT_TRUE(settled([] { ::dup2(::open("/dev/zero", O_RDWR), 1); },
                      [] {
                        char byte = 1;
                        return ::read(1, &byte, 1) == 1 && byte == 0;
                      }));
}

TEST(Surroundings, WhoeverHasTheRightsOfRootIsRootAltogether) {
  const bool isRoot = ::geteuid() == 0;
  gid_t before[64] = {};
  const int count = ::getgroups(64, before);
  EXPECT_TRUE(settled(
      [&] {
        const gid_t group = 1234;
        if (isRoot && (::setgroups(1, &group) != 0 || ::setresgid(1234, 1234, 1234) != 0 ||
                       ::setresuid(1234, 0, 1234) != 0)) {
          ::_exit(98);
        }
      },
      [&] {
        uid_t users[3] = {};
        gid_t groups[3] = {};
        ::getresuid(&users[0], &users[1], &users[2]);
        ::getresgid(&groups[0], &groups[1], &groups[2]);
        const uid_t user = isRoot ? 0 : ::geteuid();
        const gid_t group = isRoot ? 0 : ::getegid();
        for (const int kind : {0, 1, 2}) {
          if (users[kind] != user || groups[kind] != group) return false;
        }
        return ::getgroups(0, nullptr) == (isRoot ? 0 : count);
      }));
}

TEST(Surroundings, SignalsHaveTheirUsualEffectAndNoneIsBlocked) {
  EXPECT_TRUE(settled(
      [] {
        sigset_t all;
        sigfillset(&all);
        ::sigprocmask(SIG_SETMASK, &all, nullptr);
        for (const int number : {SIGTERM, SIGCHLD, SIGHUP, SIGUSR1}) ::signal(number, SIG_IGN);
      },
      [] {
        sigset_t blocked;
        ::sigprocmask(SIG_SETMASK, nullptr, &blocked);
        for (const int number : {SIGTERM, SIGCHLD, SIGHUP, SIGUSR1}) {
          struct sigaction action {};
          ::sigaction(number, nullptr, &action);
          if (action.sa_handler != SIG_DFL || sigismember(&blocked, number) != 0) return false;
        }
        return true;
      }));
}

TEST(Surroundings, WhatCanBeAnErrorIsNoSignal) {
  EXPECT_TRUE(settled([] {},
                      [] {
                        for (const int number : {SIGPIPE, SIGXFSZ, SIGTTOU}) {
                          struct sigaction action {};
                          ::sigaction(number, nullptr, &action);
                          if (action.sa_handler != SIG_IGN) return false;
                        }
                        return true;
                      }));
}

TEST(Surroundings, NoTimerIsPending) {
  EXPECT_TRUE(settled([] { ::alarm(1000); }, [] { return ::alarm(0) == 0; }));
}

// Whether this process may widen a hard limit: root may, where it has all of root's rights.
bool mayWidenForGood() {
  return kr::testing::inChild([] {
           const rlimit small{20, 20};
           const rlimit wide{20, 21};
           ::setrlimit(RLIMIT_FSIZE, &small);
           return ::setrlimit(RLIMIT_FSIZE, &wide) == 0 ? 0 : 1;
         }) == 0;
}

TEST(Surroundings, LimitsAreAsWideAsTheyMayBe) {
  const bool isFree = mayWidenForGood();
  EXPECT_TRUE(settled(
      [] {
        const rlimit small{20, 100};
        ::setrlimit(RLIMIT_FSIZE, &small);
        ::setrlimit(RLIMIT_NOFILE, &small);
      },
      [&] {
        rlimit size{};
        rlimit files{};
        ::getrlimit(RLIMIT_FSIZE, &size);
        ::getrlimit(RLIMIT_NOFILE, &files);
        return size.rlim_cur == (isFree ? RLIM_INFINITY : 100) && files.rlim_cur == (isFree ? 256 : 100);
      }));
}

TEST(Surroundings, ThreadsHaveRoom) {
  EXPECT_TRUE(settled([] {},
                      [] {
                        pthread_attr_t attributes;
                        std::size_t size = 0;
                        ::pthread_getattr_default_np(&attributes);
                        ::pthread_attr_getstacksize(&attributes, &size);
                        return size == 1UL << 20;
                      }));
}

TEST(Surroundings, NothingIsOpenToOthersAndNoCoreIsDumped) {
  for (const mode_t mask : {0, 0777}) {
    EXPECT_TRUE(settled([&] { ::umask(mask); },
                        [] {
                          rlimit core{};
                          ::getrlimit(RLIMIT_CORE, &core);
                          return ::umask(0) == 0077 && core.rlim_cur == 0 && core.rlim_max == 0;
                        }));
  }
}

TEST(Surroundings, TheEnvironmentIsEmptyAndTheCurrentFolderTheRoot) {
  EXPECT_TRUE(settled([] { ::setenv("LANG", "de_DE.UTF-8", 1); },
                      [] {
                        char path[PATH_MAX] = {};
                        return (environ == nullptr || environ[0] == nullptr) &&
                               ::getcwd(path, sizeof path) != nullptr && std::string(path) == "/";
                      }));
}

}  // namespace
}  // namespace kr::train
