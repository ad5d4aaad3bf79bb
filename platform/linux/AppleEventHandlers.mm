#import "platform/cocoa/AppleEventHandlers.h"

#import <AppKit/AppKit.h>

#include <map>
#include <utility>

#include "platform/Log.h"
#import "platform/cocoa/Bridging.h"
#include "platform/linux/AppleEventInbox.h"

using kr::platform::AppleEventInbox;

namespace {

// How long events may keep the run loop from everything else: a small part of the time that a person notices.
constexpr std::chrono::milliseconds kTurn{5};

struct Target {
  id object;
  SEL selector;
};
using Targets = std::map<std::pair<std::uint32_t, std::uint32_t>, Target>;

void* runLoopData(int descriptor) {
  return reinterpret_cast<void*>(static_cast<std::intptr_t>(descriptor));
}

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

// Lets the inbox work whenever the main run loop finds its descriptor ready.
@interface KRAppleEventWatcher : NSObject <RunLoopEvents> {
  Targets targets;
  AppleEventInbox* inbox;  // lives as long as the program
  std::optional<AppleEventInbox::Readiness> watched;
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
  [self watch];
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

// Has the run loop wait for what the inbox waits for now.
- (void)watch {
  const auto wanted = inbox->readiness();
  if (wanted == watched) return;
  NSRunLoop* loop = [NSRunLoop mainRunLoop];
  for (NSString* mode in @[ NSDefaultRunLoopMode, NSModalPanelRunLoopMode, NSEventTrackingRunLoopMode ]) {
    if (watched) {
      [loop removeEvent:runLoopData(watched->descriptor) type:ET_RDESC forMode:mode all:YES];
      if (watched->write)
        [loop removeEvent:runLoopData(watched->descriptor) type:ET_WDESC forMode:mode all:YES];
    }
    if (wanted) {
      [loop addEvent:runLoopData(wanted->descriptor) type:ET_RDESC watcher:self forMode:mode];
      if (wanted->write) {
        [loop addEvent:runLoopData(wanted->descriptor) type:ET_WDESC watcher:self forMode:mode];
      }
    }
  }
  watched = wanted;
}

- (void)receivedEvent:(void*)data type:(RunLoopEventType)type extra:(void*)extra forMode:(NSString*)mode {
  inbox->work(kTurn);
  [self watch];
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
