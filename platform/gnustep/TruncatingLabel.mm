#import "platform/gnustep/TruncatingLabel.h"

#include <objc/runtime.h>

#import "platform/gnustep/LabelText.h"

namespace {

// As many units of the text, shared out between its beginning and its end; no character is taken apart.
NSString* shortened(NSString* text, NSUInteger units) {
  const NSUInteger length = [text length];
  const NSUInteger tail = units / 2;
  const NSUInteger head = units - tail;
  const NSRange left = [text rangeOfComposedCharacterSequenceAtIndex:head];
  NSUInteger begin = length - tail;
  if (tail > 0) {
    const NSRange right = [text rangeOfComposedCharacterSequenceAtIndex:begin];
    if (right.location < begin) begin = NSMaxRange(right);
  }
  return [NSString
      stringWithFormat:@"%@…%@", [text substringToIndex:left.location], [text substringFromIndex:begin]];
}

}  // namespace

namespace kr::theme {

NSString* middleTruncated(NSString* text, NSDictionary* attributes, CGFloat width) {
  if ([text sizeWithAttributes:attributes].width <= width) return text;
  NSUInteger fits = 0;
  NSUInteger tooMany = [text length];
  while (fits + 1 < tooMany) {
    const NSUInteger units = (fits + tooMany) / 2;
    if ([shortened(text, units) sizeWithAttributes:attributes].width <= width) {
      fits = units;
    } else {
      tooMany = units;
    }
  }
  return shortened(text, fits);
}

}  // namespace kr::theme

// Adds no instance variables: labels that were made already become of this class.
@interface KRTruncatingCell : NSTextFieldCell
@end

@implementation KRTruncatingCell

- (void)drawInteriorWithFrame:(NSRect)frame inView:(NSView*)view {
  NSAttributedString* whole = [self attributedStringValue];
  if ([whole length] == 0) return;
  NSDictionary* attributes = [whole attributesAtIndex:0 effectiveRange:nullptr];
  const NSRect line = [self titleRectForBounds:frame];
  // The text is drawn with a small margin on both sides.
  const CGFloat room = NSWidth(line) - 2;
  NSString* shown = kr::theme::drawable(kr::theme::middleTruncated([whole string], attributes, room));
  NSAttributedString* title = [[[NSAttributedString alloc] initWithString:shown
                                                               attributes:attributes] autorelease];
  [title drawInRect:line];
}

@end

namespace kr::theme {

void truncateInTheMiddle(NSTextField* label) {
  NSCell* cell = [label cell];
  if (![cell isMemberOfClass:[NSTextFieldCell class]] ||
      [cell lineBreakMode] != NSLineBreakByTruncatingMiddle)
    return;
  object_setClass(cell, [KRTruncatingCell class]);
}

}  // namespace kr::theme
