#include "tests/support/Forked.h"

#include <grp.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>

namespace kr::testing {
namespace {

constexpr unsigned kNobody = 65534;
constexpr int kNotPrepared = 99;

void answerSystemCall(int number, unsigned answer) {
  sock_filter rules[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(number), 0, 1),
      BPF_STMT(BPF_RET | BPF_K, answer),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog program{sizeof rules / sizeof rules[0], rules};
  if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
      ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
    ::_exit(kNotPrepared);
  }
}

}  // namespace

int inChild(const std::function<int()>& work) {
  const pid_t pid = ::fork();
  if (pid == 0) {
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    // What it throws must not reach the tests that this process came from.
    try {
      ::_exit(work());
    } catch (...) {
      ::_exit(kNotPrepared);
    }
  }
  int status = -1;
  ::waitpid(pid, &status, 0);
  return status;
}

void becomeOrdinaryUser() {
  if (::geteuid() != 0) return;
  if (::setgroups(0, nullptr) != 0 || ::setresgid(kNobody, kNobody, kNobody) != 0 ||
      ::setresuid(kNobody, kNobody, kNobody) != 0) {
    ::_exit(kNotPrepared);
  }
}

void failSystemCall(int number, int error) {
  answerSystemCall(number, SECCOMP_RET_ERRNO | (static_cast<unsigned>(error) & SECCOMP_RET_DATA));
}

void dieAtSystemCall(int number) {
  answerSystemCall(number, SECCOMP_RET_KILL_PROCESS);
}

}  // namespace kr::testing
