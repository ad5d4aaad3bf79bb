#include "tests/support/WatchedProgram.h"

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <cstddef>
#include <cstring>
#include <stdexcept>

#include "platform/posix/FileDescriptor.h"

namespace kr::testing {
namespace {

using posix::FileDescriptor;

constexpr int kNotPrepared = 99;

// The descriptor on which the calls of this process are announced from now on.
int announceCalls(const std::vector<int>& kinds) {
  std::vector<sock_filter> rules{BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
  for (const int kind : kinds) {
    rules.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(kind), 0, 1));
    rules.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_USER_NOTIF));
  }
  rules.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  const sock_fprog program{static_cast<unsigned short>(rules.size()), rules.data()};
  if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return -1;
  return static_cast<int>(
      ::syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_NEW_LISTENER, &program));
}

union Control {
  cmsghdr header;
  char bytes[CMSG_SPACE(sizeof(int))];
};

msghdr message(iovec& content, Control& control) {
  msghdr all{};
  all.msg_iov = &content;
  all.msg_iovlen = 1;
  all.msg_control = control.bytes;
  all.msg_controllen = sizeof control.bytes;
  return all;
}

bool sendDescriptor(int socket, int descriptor) {
  char byte = 0;
  iovec content{&byte, 1};
  Control control{};
  msghdr all = message(content, control);
  control.header = {CMSG_LEN(sizeof descriptor), SOL_SOCKET, SCM_RIGHTS};
  std::memcpy(CMSG_DATA(&control.header), &descriptor, sizeof descriptor);
  return ::sendmsg(socket, &all, 0) == 1;
}

FileDescriptor receiveDescriptor(int socket) {
  char byte = 0;
  iovec content{&byte, 1};
  Control control{};
  msghdr all = message(content, control);
  if (::recvmsg(socket, &all, MSG_CMSG_CLOEXEC) != 1 || all.msg_controllen == 0) return {};
  int descriptor = -1;
  std::memcpy(&descriptor, CMSG_DATA(&control.header), sizeof descriptor);
  return FileDescriptor(descriptor);
}

[[noreturn]] void becomeProgram(const std::vector<std::string>& words, const std::vector<int>& kinds,
                                int socket, const std::function<void()>& prepare) {
  std::vector<char*> pointers;
  for (const std::string& word : words) pointers.push_back(const_cast<char*>(word.c_str()));
  pointers.push_back(nullptr);
  const rlimit none{0, 0};
  ::setrlimit(RLIMIT_CORE, &none);
  const int listener = announceCalls(kinds);
  if (listener < 0 || !sendDescriptor(socket, listener)) ::_exit(kNotPrepared);
  ::close(listener);
  ::close(socket);
  if (prepare) prepare();
  ::execv(pointers[0], pointers.data());
  ::_exit(kNotPrepared);
}

// False when there will be no further call.
bool answerOne(int listener, pid_t pid, int& count, const std::function<Answer(const SystemCall&)>& decide) {
  pollfd waiting{listener, POLLIN, 0};
  while (::poll(&waiting, 1, -1) < 0 && errno == EINTR) continue;
  if ((waiting.revents & POLLIN) == 0) return false;
  seccomp_notif call{};
  // The caller may have been killed meanwhile.
  if (::ioctl(listener, SECCOMP_IOCTL_NOTIF_RECV, &call) != 0) return errno == ENOENT || errno == EINTR;
  SystemCall announced{call.data.nr, ++count, {}, static_cast<pid_t>(call.pid)};
  std::copy(std::begin(call.data.args), std::end(call.data.args), announced.arguments.begin());
  const Answer answer = decide(announced);
  if (answer.kind == Answer::Kind::kill) {
    ::kill(pid, SIGKILL);
    return true;
  }
  seccomp_notif_resp reply{};
  reply.id = call.id;
  if (answer.kind == Answer::Kind::proceed) {
    reply.flags = SECCOMP_USER_NOTIF_FLAG_CONTINUE;
  } else {
    reply.error = -answer.error;
    reply.val = answer.value;
  }
  (void)::ioctl(listener, SECCOMP_IOCTL_NOTIF_SEND, &reply);
  return true;
}

}  // namespace

std::string SystemCall::fileAt(std::size_t argument) const {
  const std::string link =
      "/proc/" + std::to_string(thread) + "/fd/" + std::to_string(static_cast<int>(arguments.at(argument)));
  std::array<char, PATH_MAX> path{};
  const ssize_t size = ::readlink(link.c_str(), path.data(), path.size());
  return {path.data(), static_cast<std::size_t>(size < 0 ? 0 : size)};
}

std::string SystemCall::textAt(std::size_t argument) const {
  const FileDescriptor memory(::open(("/proc/" + std::to_string(thread) + "/mem").c_str(), O_RDONLY));
  std::array<char, PATH_MAX> text{};
  const ssize_t size =
      ::pread(memory.get(), text.data(), text.size() - 1, static_cast<off_t>(arguments.at(argument)));
  return size < 0 ? std::string() : std::string(text.data());
}

int watched(const std::vector<std::string>& words, const std::vector<int>& kinds,
            const std::function<Answer(const SystemCall&)>& decide, const std::function<void()>& prepare) {
  std::array<int, 2> sockets{};
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets.data()) != 0) {
    throw std::runtime_error("no socket pair");
  }
  const FileDescriptor ours(sockets[0]);
  FileDescriptor theirs(sockets[1]);
  const pid_t pid = ::fork();
  if (pid == 0) becomeProgram(words, kinds, theirs.get(), prepare);
  theirs.reset();
  const FileDescriptor listener = receiveDescriptor(ours.get());
  int count = 0;
  while (listener && answerOne(listener.get(), pid, count, decide)) continue;
  int status = -1;
  ::waitpid(pid, &status, 0);
  if (!listener || (WIFEXITED(status) && WEXITSTATUS(status) == kNotPrepared)) {
    throw std::runtime_error("cannot watch " + words.front());
  }
  return status;
}

}  // namespace kr::testing
