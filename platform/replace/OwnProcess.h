// What a process that was started with the rights of another has to put right in itself before it works, as
// far as each system has a call of its own for it. Only while there is one thread.
#pragma once

namespace kr::platform::replace {

// Forgets all variables of the environment.
void clearEnvironment() noexcept;

// Gives threads to come a stack of their usual size, whatever limit this process was started with.
void giveThreadsRoom() noexcept;

}  // namespace kr::platform::replace
