// The Apple events that other programs send to this one. Main thread.
#pragma once

#import <Foundation/Foundation.h>

#include <cstdint>

namespace kr::platform {

// From now on every event of this class and ID is delivered to the target by a message with two arguments,
// the event and its reply, both NSAppleEventDescriptor (on Linux the reply is nil); a later call for the same
// class and ID replaces the target. Delivery is on the main thread, one event at a time in the order of their
// coming, while the run loop is in its default mode, tracks the mouse or runs a modal panel. The target is
// not retained. An event that nothing is set for is answered as not handled. Where no events can be received,
// as on Linux without a session bus, nothing happens.
void setAppleEventHandler(id target, SEL selector, std::uint32_t eventClass, std::uint32_t eventID);

// The event's direct object as text; nil where there is none or it is no text.
[[nodiscard]] NSString* directText(NSAppleEventDescriptor* event);

}  // namespace kr::platform
