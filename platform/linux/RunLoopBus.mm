#include "platform/linux/RunLoopBus.h"

#import <AppKit/AppKit.h>

#include <utility>

using kr::platform::BusReadiness;

namespace {

void* runLoopData(int descriptor) {
  return reinterpret_cast<void*>(static_cast<std::intptr_t>(descriptor));
}

}  // namespace

@interface KRBusWatcher : NSObject <RunLoopEvents> {
 @public
  std::function<std::optional<BusReadiness>()> readiness;
  std::function<void()> work;
  std::optional<BusReadiness> watched;
}
- (void)watch:(std::optional<BusReadiness>)wanted;
@end

@implementation KRBusWatcher

- (void)watch:(std::optional<BusReadiness>)wanted {
  if (wanted == watched) return;
  NSRunLoop* loop = [NSRunLoop mainRunLoop];
  for (NSString* mode in @[ NSDefaultRunLoopMode, NSModalPanelRunLoopMode, NSEventTrackingRunLoopMode ]) {
    if (watched) {
      void* data = runLoopData(watched->descriptor);
      [loop removeEvent:data type:ET_RDESC forMode:mode all:YES];
      if (watched->write) [loop removeEvent:data type:ET_WDESC forMode:mode all:YES];
    }
    if (wanted) {
      void* data = runLoopData(wanted->descriptor);
      [loop addEvent:data type:ET_RDESC watcher:self forMode:mode];
      if (wanted->write) [loop addEvent:data type:ET_WDESC watcher:self forMode:mode];
    }
  }
  watched = wanted;
}

- (void)receivedEvent:(void*)data type:(RunLoopEventType)type extra:(void*)extra forMode:(NSString*)mode {
  [[self retain] autorelease];
  work();
  [self watch:readiness()];
}

@end

namespace kr::platform {

RunLoopBus::RunLoopBus(std::function<std::optional<BusReadiness>()> readiness, std::function<void()> work) {
  KRBusWatcher* watcher = [[KRBusWatcher alloc] init];
  watcher->readiness = std::move(readiness);
  watcher->work = std::move(work);
  [watcher watch:watcher->readiness()];
  watcher_ = watcher;
}

RunLoopBus::~RunLoopBus() {
  auto* watcher = static_cast<KRBusWatcher*>(watcher_);
  [watcher watch:std::nullopt];
  watcher->readiness = [] { return std::nullopt; };
  [watcher release];
}

}  // namespace kr::platform
