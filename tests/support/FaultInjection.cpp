#include "tests/support/FaultInjection.h"

#include <sys/syscall.h>

#include <cerrno>
#include <system_error>

#include "tests/support/SystemCalls.h"

namespace kr::testing {
namespace {

bool startsThread(long number) {
  return number == SYS_clone || number == SYS_clone3;
}

// What the call is asked to move, where it may move less.
std::uint64_t sizeToCut(const WatchedCall& call) {
  const auto index = sizeArgument(call.number);
  return index ? call.arguments[*index] : 0;
}

Verdict strike(const WatchedCall& call, const Fault& fault) {
  switch (fault.kind) {
    case Fault::Kind::cutShort:
      return Verdict::cutShort(sizeToCut(call) / 2);
    case Fault::Kind::kill:
      return Verdict::kill();
    case Fault::Kind::error:
      break;
  }
  if (call.number == SYS_close) return Verdict::failAfterwards(fault.number);
  return Verdict::fail(startsThread(call.number) ? EAGAIN : fault.number);
}

}  // namespace

std::string Fault::text() const {
  if (kind == Kind::kill) return "killed";
  return kind == Kind::cutShort ? "cut short" : std::generic_category().message(number);
}

FaultRun runWithFault(const std::function<int()>& work, std::size_t at, const Fault& fault, Threads threads) {
  FaultRun run{};
  run.traced = trace(work, [&](const WatchedCall& call) {
    if (threads == Threads::one && startsThread(call.number)) return Verdict::fail(EAGAIN);
    const bool counts = fault.kind != Fault::Kind::cutShort || sizeToCut(call) > 1;
    if (counts && ++run.countedCalls == at) {
      ++run.hits;
      run.number = call.number;
      run.call = call.text();
      return strike(call, fault);
    }
    return waitsForDisk(call.number) ? Verdict::answer(0) : Verdict::pass();
  });
  return run;
}

}  // namespace kr::testing
