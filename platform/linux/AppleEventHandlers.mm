#import "platform/cocoa/AppleEventHandlers.h"

#import <AppKit/AppKit.h>

#include <map>
#include <utility>

#include "platform/Log.h"
#import "platform/cocoa/Bridging.h"
#include "platform/linux/AppleEventInbox.h"
#include "platform/linux/RunLoopBus.h"

using kr::platform::AppleEventInbox;

namespace {

// How long events may keep the run loop from everything else: a small part of the time that a person notices.
constexpr std::chrono::milliseconds kTurn{5};

struct Target {
  id object;
  SEL selector;
};
using Targets = std::map<std::pair<std::uint32_t, std::uint32_t>, Target>;

}  // namespace

// A received event. The toolkit's class of descriptors is empty.
@interface KRReceivedAppleEvent : NSAppleEventDescriptor {
 @public
  NSString* directText;  // owned; nil for none
}
@end

@implementation KRReceivedAppleEvent

- (void)dealloc {
  [directText release];
  [super dealloc];
}

@end

// Who handles which event. The inbox and what lets it work live as long as the program.
@interface KRAppleEventWatcher : NSObject {
  Targets targets;
  AppleEventInbox* inbox;
  kr::platform::RunLoopBus* source;
}
+ (KRAppleEventWatcher*)sharedWatcher;
- (void)setTarget:(Target)target forEvent:(std::pair<std::uint32_t, std::uint32_t>)event;
@end

@implementation KRAppleEventWatcher

+ (KRAppleEventWatcher*)sharedWatcher {
  static KRAppleEventWatcher* watcher = [[KRAppleEventWatcher alloc] init];
  return watcher;
}

- (void)setTarget:(Target)target forEvent:(std::pair<std::uint32_t, std::uint32_t>)event {
  targets.insert_or_assign(event, target);
  if (inbox != nullptr) return;
  inbox = new AppleEventInbox(
      [self](std::uint32_t eventClass, std::uint32_t eventID, const std::optional<std::string>& text) {
        const auto found = targets.find({eventClass, eventID});
        if (found == targets.end()) return false;
        [self deliver:text to:found->second];
        return true;
      });
  inbox->open();
  source =
      new kr::platform::RunLoopBus([self] { return inbox->readiness(); }, [self] { inbox->work(kTurn); });
}

- (void)deliver:(const std::optional<std::string>&)text to:(Target)target {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  KRReceivedAppleEvent* event = [[[KRReceivedAppleEvent alloc] init] autorelease];
  event->directText = [kr::toNSString(text) retain];
  @try {
    [target.object performSelector:target.selector withObject:event withObject:nil];
  } @catch (NSException* exception) {
    kr::log("EXCEPTION @ Apple event: %@", kr::toBytes([exception description]));
  }
  [pool release];
}

@end

namespace kr::platform {

void setAppleEventHandler(id target, SEL selector, std::uint32_t eventClass, std::uint32_t eventID) {
  [[KRAppleEventWatcher sharedWatcher] setTarget:{target, selector} forEvent:{eventClass, eventID}];
}

NSString* directText(NSAppleEventDescriptor* event) {
  return [event isKindOfClass:[KRReceivedAppleEvent class]]
             ? static_cast<KRReceivedAppleEvent*>(event)->directText
             : nil;
}

}  // namespace kr::platform
