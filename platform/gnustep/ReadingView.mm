#import "platform/gnustep/ReadingView.h"

#include <objc/runtime.h>

#import "platform/gnustep/ThemeColors.h"

// Adds no instance variables: views that were made already become of this class.
@interface KRReadingView : NSTextView
@end

@implementation KRReadingView

// Tab would lead to it on a page that is not shown.
- (BOOL)canBecomeKeyView {
  return [self window] != nil && [super canBecomeKeyView];
}

- (void)drawRect:(NSRect)rect {
  const kr::theme::PaletteScope scope(kr::theme::paletteFor(self));
  [super drawRect:rect];
}

@end

namespace kr::theme {

void followAppearance(NSTextView* view) {
  if ([view isMemberOfClass:[NSTextView class]]) object_setClass(view, [KRReadingView class]);
}

}  // namespace kr::theme
