// What AppKit has had for views since 10.14 and GNUstep lacks: an appearance of their own. The theme has one
// appearance, so a view only keeps the one that it was given; whoever draws may ask for it.
#import <AppKit/AppKit.h>
#include <objc/runtime.h>

#include <mutex>

namespace {

// The views that were given an appearance. Not retained: a view leaves the table when it is deallocated.
NSMapTable* gAppearances;
std::mutex gMutex;
IMP gOriginalDealloc;

void deallocView(NSView* view, SEL selector) {
  {
    const std::lock_guard lock(gMutex);
    if (gAppearances != nullptr) NSMapRemove(gAppearances, view);
  }
  reinterpret_cast<void (*)(NSView*, SEL)>(gOriginalDealloc)(view, selector);
}

}  // namespace

@interface NSView (KRAppearance)
- (NSAppearance*)appearance;
- (void)setAppearance:(NSAppearance*)appearance;
@end

@implementation NSView (KRAppearance)

- (NSAppearance*)appearance {
  const std::lock_guard lock(gMutex);
  return gAppearances == nullptr ? nil : [[static_cast<id>(NSMapGet(gAppearances, self)) retain] autorelease];
}

- (void)setAppearance:(NSAppearance*)appearance {
  const std::lock_guard lock(gMutex);
  if (gAppearances == nullptr) {
    gAppearances = NSCreateMapTable(NSNonOwnedPointerMapKeyCallBacks, NSObjectMapValueCallBacks, 4);
    Method dealloc = class_getInstanceMethod([NSView class], @selector(dealloc));
    gOriginalDealloc = method_setImplementation(dealloc, reinterpret_cast<IMP>(deallocView));
  }
  if (appearance != nil) {
    NSMapInsert(gAppearances, self, appearance);
  } else {
    NSMapRemove(gAppearances, self);
  }
}

@end
