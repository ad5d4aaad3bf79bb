#include "tests/support/Tracer.h"

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "platform/posix/FileDescriptor.h"
#include "tests/support/SystemCalls.h"

namespace kr::testing {
namespace {

constexpr int kNotPrepared = 99;
constexpr long kNoCall = -1;

// Memory, threads, signals, time, and who the process is.
constexpr int kUnwatched[] = {SYS_arch_prctl,
                              SYS_brk,
                              SYS_clock_gettime,
                              SYS_clock_nanosleep,
                              SYS_exit,
                              SYS_exit_group,
                              SYS_futex,
                              SYS_getcpu,
                              SYS_getegid,
                              SYS_geteuid,
                              SYS_getgid,
                              SYS_getgroups,
                              SYS_getpid,
                              SYS_getppid,
                              SYS_getrusage,
                              SYS_gettid,
                              SYS_gettimeofday,
                              SYS_getuid,
                              SYS_madvise,
                              SYS_membarrier,
                              SYS_mprotect,
                              SYS_mremap,
                              SYS_munmap,
                              SYS_nanosleep,
                              SYS_prctl,
                              SYS_prlimit64,
                              SYS_restart_syscall,
                              SYS_rseq,
                              SYS_rt_sigaction,
                              SYS_rt_sigprocmask,
                              SYS_rt_sigreturn,
                              SYS_sched_getaffinity,
                              SYS_sched_setaffinity,
                              SYS_sched_yield,
                              SYS_set_robust_list,
                              SYS_sigaltstack,
                              SYS_sysinfo,
                              SYS_tgkill,
                              SYS_time,
                              SYS_uname};

std::runtime_error lastError(const char* step) {
  return std::runtime_error(std::string(step) + ": " + std::generic_category().message(errno));
}

void watchCalls() {
  constexpr sock_filter kTrace = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_TRACE);
  constexpr sock_filter kAllow = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
  std::vector<sock_filter> rules{BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
  for (const int number : kUnwatched) {
    rules.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(number), 0, 1));
    rules.push_back(kAllow);
  }
  // Mapping a file reads it; mapping none is memory.
  rules.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_mmap, 0, 3));
  rules.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[3])));
  rules.push_back(BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, MAP_ANONYMOUS, 0, 1));
  rules.push_back(kAllow);
  rules.push_back(kTrace);
  const sock_fprog program{static_cast<unsigned short>(rules.size()), rules.data()};
  if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
      ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
    ::_exit(kNotPrepared);
  }
}

// The process that is watched; it is killed with this object, or with the process that watches it.
class Tracee {
 public:
  explicit Tracee(const std::function<int()>& work) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw lastError("pipe");
    const posix::FileDescriptor wait(ends[0]);
    posix::FileDescriptor go(ends[1]);
    pid_ = ::fork();
    if (pid_ < 0) throw lastError("fork");
    if (pid_ == 0) {
      go.reset();
      char byte = 0;
      if (::read(wait.get(), &byte, 1) != 1) ::_exit(kNotPrepared);
      const rlimit none{0, 0};
      ::setrlimit(RLIMIT_CORE, &none);
      watchCalls();
      ::_exit(work());
    }
    // A group of its own: nobody else's end is taken with waitpid().
    constexpr long kOptions = PTRACE_O_EXITKILL | PTRACE_O_TRACESECCOMP | PTRACE_O_TRACECLONE |
                              PTRACE_O_TRACEFORK | PTRACE_O_TRACEVFORK | PTRACE_O_TRACESYSGOOD;
    if (::setpgid(pid_, pid_) != 0 || ::ptrace(PTRACE_SEIZE, pid_, 0, kOptions) != 0) {
      const std::runtime_error error = lastError("trace a process");
      go.reset();
      ::waitpid(pid_, nullptr, 0);
      throw error;
    }
    if (::write(go.get(), "!", 1) != 1) throw lastError("start");
  }

  ~Tracee() {
    ::kill(-pid_, SIGKILL);
    while (::waitpid(-pid_, nullptr, __WALL) > 0) {
    }
  }

  Tracee(const Tracee&) = delete;
  Tracee& operator=(const Tracee&) = delete;

  [[nodiscard]] pid_t pid() const { return pid_; }

 private:
  pid_t pid_;
};

// A thread whose process is killed meanwhile is no error: its end comes next.
void expectDone(long result, const char* step) {
  if (result != 0 && errno != ESRCH) throw lastError(step);
}

std::optional<user_regs_struct> registers(pid_t thread) {
  user_regs_struct values{};
  const long result = ::ptrace(PTRACE_GETREGS, thread, 0, &values);
  expectDone(result, "read registers");
  return result == 0 ? std::optional(values) : std::nullopt;
}

void setRegisters(pid_t thread, user_regs_struct values) {
  expectDone(::ptrace(PTRACE_SETREGS, thread, 0, &values), "set registers");
}

unsigned long long& argument(user_regs_struct& values, std::size_t index) {
  unsigned long long* const all[] = {&values.rdi, &values.rsi, &values.rdx,
                                     &values.r10, &values.r8,  &values.r9};
  return *all[index];
}

WatchedCall watchedCall(std::size_t index, pid_t thread, const user_regs_struct& values) {
  return {index,
          thread,
          static_cast<long>(values.orig_rax),
          {values.rdi, values.rsi, values.rdx, values.r10, values.r8, values.r9}};
}

// Carries the verdict out on a thread that stands before its call. Answers the request that lets it go on.
auto carryOut(const Verdict& verdict, pid_t thread, pid_t process, user_regs_struct values) {
  switch (verdict.kind) {
    case Verdict::Kind::answer:
      values.orig_rax = static_cast<unsigned long long>(kNoCall);
      values.rax = static_cast<unsigned long long>(verdict.value);
      setRegisters(thread, values);
      break;
    case Verdict::Kind::cutShort:
      argument(values, sizeArgument(static_cast<long>(values.orig_rax)).value()) =
          static_cast<unsigned long long>(verdict.value);
      setRegisters(thread, values);
      break;
    case Verdict::Kind::answerAfterwards:
      return PTRACE_SYSCALL;
    case Verdict::Kind::kill:
      ::kill(process, SIGKILL);
      break;
    case Verdict::Kind::pass:
      break;
  }
  return PTRACE_CONT;
}

}  // namespace

std::string WatchedCall::path() const {
  const auto pathIndex = pathArgument(number);
  if (!pathIndex) return "";
  std::string text;
  std::array<char, 256> bytes{};
  for (std::uint64_t at = arguments[*pathIndex];;) {
    // No further than the page, behind which there may be nothing.
    const std::size_t size = bytes.size() - at % bytes.size();
    iovec own{bytes.data(), size};
    iovec other{reinterpret_cast<void*>(at), size};
    const ssize_t count = ::process_vm_readv(thread, &own, 1, &other, 1, 0);
    if (count <= 0) return text;
    const std::string_view part(bytes.data(), static_cast<std::size_t>(count));
    text += part.substr(0, part.find('\0'));
    if (part.find('\0') != std::string_view::npos) return text;
    at += static_cast<std::size_t>(count);
  }
}

std::string WatchedCall::text() const {
  const std::string name = systemCallName(number);
  return pathArgument(number) ? name + " " + path() : name;
}

Traced trace(const std::function<int()>& work, const std::function<Verdict(const WatchedCall&)>& watch) {
  const Tracee tracee(work);
  Traced traced{};
  std::set<pid_t> threads;
  std::map<pid_t, std::int64_t> lateAnswers;
  for (;;) {
    int status = 0;
    const pid_t thread = ::waitpid(-tracee.pid(), &status, __WALL);
    if (thread < 0 && errno == EINTR) continue;
    if (thread < 0) throw lastError("wait for a traced process");
    if (!WIFSTOPPED(status)) {
      if (thread != tracee.pid()) continue;
      if (WIFEXITED(status) && WEXITSTATUS(status) == kNotPrepared) throw std::runtime_error("not prepared");
      traced.status = status;
      traced.threads = threads.size();
      return traced;
    }
    auto request = PTRACE_CONT;
    int signal = 0;
    const bool isBeforeCall = status >> 8 == (SIGTRAP | PTRACE_EVENT_SECCOMP << 8);
    const bool isAfterCall = WSTOPSIG(status) == (SIGTRAP | 0x80);
    std::optional<user_regs_struct> values;
    if (isBeforeCall || isAfterCall) values = registers(thread);
    if (values && isBeforeCall) {
      threads.insert(thread);
      const Verdict verdict = watch(watchedCall(++traced.calls, thread, *values));
      lateAnswers[thread] = verdict.value;
      request = carryOut(verdict, thread, tracee.pid(), *values);
    } else if (values) {
      values->rax = static_cast<unsigned long long>(lateAnswers[thread]);
      setRegisters(thread, *values);
    } else if (status >> 16 == 0 && !isAfterCall) {
      signal = WSTOPSIG(status);
    }
    expectDone(::ptrace(request, thread, 0, signal), "go on");
  }
}

}  // namespace kr::testing
