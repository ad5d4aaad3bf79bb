// Work that nobody waits for, on a thread of its own. Any thread.
#pragma once

#include <functional>

namespace kr::platform {

// Begins the work and returns at once. The program's end (std::exit) waits for such work for a second at
// most, and leaves undone what takes longer. The work must not throw. Where no thread can be had it is done
// before this returns.
void workInBackground(std::function<void()> work);

}  // namespace kr::platform
