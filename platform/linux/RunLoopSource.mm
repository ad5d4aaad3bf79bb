#include "platform/linux/RunLoopSource.h"

#import <AppKit/AppKit.h>

#include <utility>

@interface KRDescriptorWatcher : NSObject <RunLoopEvents> {
  int descriptor;
  std::function<void()>* ready;
}
- (id)initWithDescriptor:(int)number ready:(std::function<void()>)function;
- (void)install;
- (void)remove;
@end

namespace {

// The modes that the run loop of an application is in, alerts and menus included.
NSArray* commonModes() {
  return [NSArray
      arrayWithObjects:NSDefaultRunLoopMode, NSModalPanelRunLoopMode, NSEventTrackingRunLoopMode, nil];
}

}  // namespace

@implementation KRDescriptorWatcher

- (id)initWithDescriptor:(int)number ready:(std::function<void()>)function {
  self = [super init];
  if (self != nil) {
    descriptor = number;
    ready = new std::function<void()>(std::move(function));
  }
  return self;
}

- (void)dealloc {
  delete ready;
  [super dealloc];
}

- (void*)data {
  return reinterpret_cast<void*>(static_cast<intptr_t>(descriptor));
}

- (void)install {
  for (NSString* mode in commonModes()) {
    [[NSRunLoop mainRunLoop] addEvent:[self data] type:ET_RDESC watcher:self forMode:mode];
  }
}

- (void)remove {
  for (NSString* mode in commonModes()) {
    [[NSRunLoop mainRunLoop] removeEvent:[self data] type:ET_RDESC forMode:mode all:YES];
  }
}

- (void)receivedEvent:(void*)data type:(RunLoopEventType)type extra:(void*)extra forMode:(NSString*)mode {
  // The function may be what takes this watcher away.
  [[self retain] autorelease];
  (*ready)();
}

@end

namespace kr::platform {

RunLoopSource::RunLoopSource(int descriptor, std::function<void()> ready)
    : watcher_([[KRDescriptorWatcher alloc] initWithDescriptor:descriptor ready:std::move(ready)]) {
  [static_cast<KRDescriptorWatcher*>(watcher_) install];
}

RunLoopSource::~RunLoopSource() {
  auto* watcher = static_cast<KRDescriptorWatcher*>(watcher_);
  [watcher remove];
  [watcher release];
}

}  // namespace kr::platform
