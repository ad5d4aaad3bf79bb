#import "platform/cocoa/Mirror.h"

namespace kr::platform {
namespace {

bool onlyHoldsViews(NSView* view) {
  return [view isMemberOfClass:[NSView class]] || [view isKindOfClass:[NSTabView class]];
}

}  // namespace

void mirror(NSView* view) {
  // The pages of a tab view that are not shown have no place in it yet.
  if ([view isKindOfClass:[NSTabView class]]) {
    for (NSTabViewItem* item in [static_cast<NSTabView*>(view) tabViewItems]) mirror([item view]);
    return;
  }
  const NSRect bounds = [view bounds];
  for (NSView* child in [view subviews]) {
    const NSRect frame = [child frame];
    [child setFrameOrigin:NSMakePoint(NSMinX(bounds) + NSMaxX(bounds) - NSMaxX(frame), NSMinY(frame))];
    if ([child isKindOfClass:[NSImageView class]]) {
      [static_cast<NSImageView*>(child) setImageAlignment:NSImageAlignCenter];
    }
    if (onlyHoldsViews(child)) mirror(child);
  }
}

}  // namespace kr::platform
