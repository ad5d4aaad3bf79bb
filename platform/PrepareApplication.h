// What a Cocoa application of this project does before its main user-interface file is loaded. Main thread,
// first thing in main().
#pragma once

namespace kr::platform {

// Gives the toolkit the look and the defaults that it lacks on this system; nothing where the system has
// them.
void prepareApplication();

}  // namespace kr::platform
