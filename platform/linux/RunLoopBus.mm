#include "platform/linux/RunLoopBus.h"

#import <AppKit/AppKit.h>

#include <fcntl.h>

#include <utility>

#include "platform/posix/FileDescriptor.h"

using kr::platform::BusReadiness;
using kr::posix::FileDescriptor;

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
  // A duplicate: the connection may close its own at any time, whose number then is another's, and the run
  // loop knows those who watch it by the number alone.
  FileDescriptor descriptor;
}
- (void)watch:(std::optional<BusReadiness>)wanted;
@end

@implementation KRBusWatcher

- (void)watch:(std::optional<BusReadiness>)wanted {
  if (wanted == watched) return;
  NSRunLoop* loop = [NSRunLoop mainRunLoop];
  NSArray* modes = @[ NSDefaultRunLoopMode, NSModalPanelRunLoopMode, NSEventTrackingRunLoopMode ];
  if (watched) {
    for (NSString* mode in modes) {
      void* data = runLoopData(descriptor.get());
      [loop removeEvent:data type:ET_RDESC forMode:mode all:YES];
      if (watched->write) [loop removeEvent:data type:ET_WDESC forMode:mode all:YES];
    }
  }
  descriptor.reset(wanted ? ::fcntl(wanted->descriptor, F_DUPFD_CLOEXEC, 0) : -1);
  if (!descriptor) wanted = std::nullopt;
  if (wanted) {
    for (NSString* mode in modes) {
      void* data = runLoopData(descriptor.get());
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

void RunLoopBus::refresh() {
  auto* watcher = static_cast<KRBusWatcher*>(watcher_);
  [watcher watch:watcher->readiness()];
}

}  // namespace kr::platform
