// A part of a test that runs in a process of its own, because it gives up rights, changes limits, or is
// killed.
#pragma once

#include <functional>

namespace kr::testing {

// Runs `work` in a forked process that ends with its answer; returns the wait status. A failed expectation in
// there does not count: answer with a number.
[[nodiscard]] int inChild(const std::function<int()>& work);

// For root: the calling process becomes an ordinary user (nobody) for good. Nothing for another user. Call it
// in a child only.
void becomeOrdinaryUser();

// From now on the calling process gets this error from this system call, or is killed when it makes the call.
// Call it in a child only.
void failSystemCall(int number, int error);
void dieAtSystemCall(int number);

}  // namespace kr::testing
