#import "platform/cocoa/AppleEventHandlers.h"

#import <ApplicationServices/ApplicationServices.h>

namespace kr::platform {

void setAppleEventHandler(id target, SEL selector, std::uint32_t eventClass, std::uint32_t eventID) {
  [[NSAppleEventManager sharedAppleEventManager] setEventHandler:target
                                                     andSelector:selector
                                                   forEventClass:eventClass
                                                      andEventID:eventID];
}

NSString* directText(NSAppleEventDescriptor* event) {
  return [[event paramDescriptorForKeyword:keyDirectObject] stringValue];
}

}  // namespace kr::platform
