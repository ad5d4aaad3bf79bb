#import "platform/gnustep/DefaultButton.h"

#include <objc/runtime.h>

#import "platform/gnustep/LabelText.h"
#import "platform/gnustep/ThemeColors.h"

namespace kr::theme {
namespace {

using DrawTitle = NSRect (*)(NSButtonCell*, SEL, NSAttributedString*, NSRect, NSView*);

DrawTitle gDrawTitle;

NSRect drawTitle(NSButtonCell* cell, SEL selector, NSAttributedString* title, NSRect rect, NSView* view) {
  NSString* text = drawable([title string]);
  if (text == [title string] && !isDefaultButton(cell)) return gDrawTitle(cell, selector, title, rect, view);
  NSMutableAttributedString* shown = [[title mutableCopy] autorelease];
  [[shown mutableString] setString:text];
  if (isDefaultButton(cell)) {
    [shown addAttribute:NSForegroundColorAttributeName
                  value:color(palette().accentText)
                  range:NSMakeRange(0, [shown length])];
  }
  return gDrawTitle(cell, selector, shown, rect, view);
}

}  // namespace

bool isDefaultButton(NSCell* cell) {
  if (![cell isKindOfClass:[NSButtonCell class]] || ![cell isEnabled]) return false;
  NSButtonCell* button = static_cast<NSButtonCell*>(cell);
  return [button isBordered] && [[button keyEquivalent] isEqualToString:@"\r"];
}

// A theme has no say in the colour of a title, and the way that themes have to override other classes'
// methods does not find the class of a method with several arguments.
void adjustButtonTitles() {
  if (gDrawTitle != nullptr) return;
  Method method = class_getInstanceMethod([NSButtonCell class], @selector(drawTitle:withFrame:inView:));
  gDrawTitle =
      reinterpret_cast<DrawTitle>(method_setImplementation(method, reinterpret_cast<IMP>(drawTitle)));
}

}  // namespace kr::theme
