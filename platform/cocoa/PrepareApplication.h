// What a Cocoa application of this project does before its main user-interface file is loaded. Main thread,
// first thing in main().
#pragma once

#import <AppKit/AppKit.h>

namespace kr::platform {

// First thing in main(). Gives the toolkit the look and the defaults that it lacks on this system; nothing
// where the system has them.
void prepareApplication();

// Sets what this system's reader of user-interface files does not take from the file. After the window was
// loaded.
void finishWindow(NSWindow* window);

}  // namespace kr::platform
