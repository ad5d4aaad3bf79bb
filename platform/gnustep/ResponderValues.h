// Values that are kept for views, windows and the application beside their own instance variables: this
// runtime has no associated objects. Any thread.
#pragma once

#import <AppKit/AppKit.h>

namespace kr::platform {

// What is kept for the responder under the key, which is compared by its address; nil when nothing is. The
// result is retained and autoreleased.
[[nodiscard]] id responderValue(NSResponder* responder, const void* key);

// Keeps the value, retained, until another one takes its place or the responder is deallocated; nil keeps
// nothing.
void setResponderValue(NSResponder* responder, const void* key, id value);

}  // namespace kr::platform
