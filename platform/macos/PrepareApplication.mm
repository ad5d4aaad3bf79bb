#import "platform/cocoa/PrepareApplication.h"

namespace kr::platform {

// AppKit here has the look and the defaults that the application expects.
void prepareApplication() {}

// The reader of user-interface files here takes all that they say.
void finishWindow(NSWindow*) {}

}  // namespace kr::platform
