// Runs a part of a test in a process of its own and stops it before each of its system calls, in every one of
// its threads. Watched are all calls but those that concern only memory, time, threads and signals.
//
//   const Traced traced = trace([] { return doIt(); }, [&](const WatchedCall& call) {
//     return call.index == 7 ? Verdict::fail(EIO) : Verdict::pass();
//   });
#pragma once

#include <sys/types.h>

#include <array>
#include <cstdint>
#include <functional>
#include <string>

namespace kr::testing {

struct WatchedCall {
  std::size_t index;  // 1 for the first one
  pid_t thread;
  long number;
  std::array<std::uint64_t, 6> arguments;

  // The path that the call works on, as it is given; empty where it takes a descriptor.
  [[nodiscard]] std::string path() const;

  // Name and path, for messages.
  [[nodiscard]] std::string text() const;
};

// What becomes of a call.
struct Verdict {
  enum class Kind { pass, answer, answerAfterwards, cutShort, kill };

  Kind kind;
  std::int64_t value = 0;

  static Verdict pass() { return {Kind::pass}; }
  // It is not made and returns the value.
  static Verdict answer(std::int64_t value) { return {Kind::answer, value}; }
  // It fails with this errno and has done nothing; but a descriptor is closed whatever close() says.
  static Verdict fail(int error) { return {Kind::answer, -error}; }
  static Verdict failAfterwards(int error) { return {Kind::answerAfterwards, -error}; }
  // Its size argument is this one.
  static Verdict cutShort(std::uint64_t size) { return {Kind::cutShort, static_cast<std::int64_t>(size)}; }
  // The process is killed before the call is made.
  static Verdict kill() { return {Kind::kill}; }
};

struct Traced {
  int status;           // wait status
  std::size_t calls;    // that were watched
  std::size_t threads;  // that made them
};

// `work` answers the exit status; `watch` is called in the calling process, which has one thread, while the
// thread that makes the call stands still. Throws std::runtime_error where processes cannot be traced.
[[nodiscard]] Traced trace(const std::function<int()>& work,
                           const std::function<Verdict(const WatchedCall&)>& watch);

}  // namespace kr::testing
