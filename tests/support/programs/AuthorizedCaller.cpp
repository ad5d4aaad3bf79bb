// AuthorizedCaller GO TOOL [ARGUMENT]...: asks for administrator rights as the installer does, as soon as
// there is a file GO, runs the tool with them, and writes what each step answered into one line. Meanwhile a
// signal handler takes the end of every child that it hears of.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

#include "platform/Authorization.h"
#include "platform/Services.h"
#include "platform/gnustep/CommandLineBytes.h"

// As Foundation's handler does once it has started a process itself.
static void reapAll(int) {
  while (::waitpid(-1, nullptr, WNOHANG) > 0) {
  }
}

int main(int count, char** words) {
  using namespace kr::platform;
  restoreCommandLineBytes();
  ::signal(SIGCHLD, reapAll);
  if (count < 3) return 2;
  while (::access(words[1], F_OK) != 0) ::usleep(10'000);
  const char* tool = words[2];
  const auto reference = services().authorization->create(tool);
  if (!reference) {
    std::puts("no reference");
    return 0;
  }
  const AuthorizationStatus right =
      reference->obtainRight("system.privilege.admin", kInteractionAllowed | kExtendRights | kPreAuthorize);
  std::printf("right %d", right);
  if (right == kAuthorized) {
    const AuthorizationStatus started = reference->execute(tool, words + 3);
    std::printf(", tool %d", started);
    int end = 0;
    if (started == kAuthorized && ::wait(&end) > 0) {
      WIFEXITED(end) ? std::printf(", status %d", WEXITSTATUS(end))
                     : std::printf(", signal %d", WTERMSIG(end));
    }
  }
  std::puts(::wait(nullptr) < 0 ? "" : ", a child is left");
  return 0;
}
