#include <string>
#include <utility>

#import "library/process/IdlePosting.h"
#import "library/process/KRProcess+Private.h"
#include "platform/Accessibility.h"
#include "platform/Log.h"
#include "platform/Services.h"
#import "platform/cocoa/Bridging.h"

using kr::toBytes;

NSString* const KRProcessUINotification = @"KRProcessUINotification";

namespace {

kr::platform::Accessibility& accessibility() {
  return *kr::platform::services().accessibility;
}

// Out of the main run loop; the observer ends before the process object does.
void notificationHandler(KRProcess* process, void* element, const std::string& notification) {
  id concerned = static_cast<id>(element);
  NSDictionary* information =
      [NSDictionary dictionaryWithObjectsAndKeys:concerned != nil ? concerned : @"", @"element",
                                                 kr::toNSString(notification), @"event", nil];
  kr::postWhenIdle(KRProcessUINotification, process, information);
}

}  // namespace

@implementation KRProcess (Accessibility)

- (void)installAXObserver {
  if (axAppElem != nullptr) return;
  axAppElem = accessibility().application([self unixPID]).release();
  if (axAppElem == nullptr) {
    kr::log("AX Notifications: Could not create application object for %@", toBytes([self description]));
    return;
  }
  KRProcess* process = self;
  axObserver = accessibility()
                   .observe(*axAppElem,
                            [process](void* element, const std::string& notification) {
                              notificationHandler(process, element, notification);
                            })
                   .release();
  if (axObserver == nullptr) {
    kr::log("AX Notifications: Could not create observer for %@", toBytes([self description]));
  }
}

- (void)addAXNotification:(NSString*)notification {
  [self installAXObserver];
  if (axObserver != nullptr && axObserver->add(toBytes(notification))) return;
  kr::log("AX Notifications: Could not add notification %@ for %@", kr::toOptionalBytes(notification),
          toBytes([self description]));
}

- (void)removeAXNotification:(NSString*)notification {
  if (axObserver != nullptr) axObserver->remove(toBytes(notification));
}

- (void)unregisterAXNotifications {
  delete std::exchange(axAppElem, nullptr);
  delete std::exchange(axObserver, nullptr);
}

@end
