// What a tool with the rights of root inherits from whoever starts it.
#pragma once

namespace kr::train {

// Makes this process independent of what it was started with: standard streams that are closed are opened on
// the null device, before anything else could get their numbers; a process with the rights of root is root's
// alone, in all its ids and without further groups; signals have their usual effect and none is
// blocked, except that a closed pipe, a file that grows too large and a terminal that must not be written
// are errors instead; no timer is pending; limits are as wide as they may be and no core is ever dumped; what
// is created is the owner's alone; the environment is empty and the current folder is the root. To be called
// first. False when it cannot be done.
[[nodiscard]] bool settle() noexcept;

}  // namespace kr::train
