// The main function of test programs that count applications: runs the tests in a process namespace of their
// own, so that nothing else on the machine starts or ends in their process table. Where the system does not
// allow that, they run as they are; KR_TEST_ISOLATED says which ("1" inside a namespace of their own).
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>

#include "platform/posix/FileDescriptor.h"

namespace {

using kr::posix::FileDescriptor;

bool write(const char* path, const std::string& text) {
  const FileDescriptor file(::open(path, O_WRONLY | O_CLOEXEC));
  return file && ::write(file.get(), text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

// The same user and group, whose rights end at the namespace.
bool enterNamespaces() {
  const uid_t user = ::geteuid();
  const gid_t group = ::getegid();
  const int further = user == 0 ? 0 : CLONE_NEWUSER;
  if (::unshare(further | CLONE_NEWPID | CLONE_NEWNS) != 0) return false;
  if (user == 0) return true;
  return write("/proc/self/setgroups", "deny") &&
         write("/proc/self/uid_map", std::to_string(user) + " " + std::to_string(user) + " 1") &&
         write("/proc/self/gid_map", std::to_string(group) + " " + std::to_string(group) + " 1");
}

// The toolkit's programs find each other by files in a folder, and remove those of processes that they cannot
// see.
bool mountToolkitFolder() {
  const std::string folder = "/tmp/GNUstepSecure" + std::to_string(::geteuid());
  if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) return false;
  return ::mount("tmpfs", folder.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, "mode=0700") == 0;
}

bool mountProcessTable() {
  return ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 && mountToolkitFolder() &&
         ::mount("proc", "/proc", "proc", MS_NOSUID | MS_NODEV | MS_NOEXEC, nullptr) == 0;
}

int statusOf(int wait) {
  return WIFEXITED(wait) ? WEXITSTATUS(wait) : 128 + WTERMSIG(wait);
}

// Waits for the child, and for whoever is handed to this process in the meantime.
int waitFor(pid_t child) {
  for (int status = 0;;) {
    const pid_t ended = ::wait(&status);
    if (ended == child) return statusOf(status);
    if (ended < 0 && errno != EINTR) return 1;
  }
}

constexpr int kNotIsolated = 99;

// The first process of the namespace; the tests run in the second. All of them end with the first.
int runIsolated() {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (!mountProcessTable()) return kNotIsolated;
  const pid_t tests = ::fork();
  if (tests < 0) return kNotIsolated;
  if (tests > 0) return waitFor(tests);
  ::setenv("KR_TEST_ISOLATED", "1", 1);
  std::exit(RUN_ALL_TESTS());
}

// What the tests have ended with; kNotIsolated where they have not run.
int runInNamespaces() {
  const pid_t outside = ::fork();
  if (outside < 0) return kNotIsolated;
  if (outside > 0) return waitFor(outside);
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (!enterNamespaces()) ::_exit(kNotIsolated);
  const pid_t first = ::fork();
  if (first == 0) ::_exit(runIsolated());
  ::_exit(first > 0 ? waitFor(first) : kNotIsolated);
}

}  // namespace

int main(int count, char** words) {
  ::testing::InitGoogleTest(&count, words);
  if (!GTEST_FLAG_GET(list_tests)) {
    const int status = runInNamespaces();
    if (status != kNotIsolated) return status;
  }
  return RUN_ALL_TESTS();
}
