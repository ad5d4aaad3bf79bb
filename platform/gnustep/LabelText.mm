#import "platform/gnustep/LabelText.h"

#include <objc/runtime.h>

#include <algorithm>
#include <cmath>

#import "platform/cocoa/Bridging.h"
#import "platform/gnustep/UserLanguages.h"
#include "platform/gnustep/VisualText.h"

using kr::platform::interfaceIsRightToLeft;

namespace kr::theme {
namespace {

constexpr CGFloat kEndless = 1e6;

bool needsOrder(NSString* text) {
  return hasRightToLeft(toUTF16(text));
}

CGFloat widthOf(NSString* line, NSDictionary* attributes) {
  return [line sizeWithAttributes:attributes].width;
}

CGFloat lineHeight(NSDictionary* attributes) {
  return std::ceil([@"X" sizeWithAttributes:attributes].height);
}

}  // namespace

NSString* drawable(NSString* text) {
  if (!needsOrder(text)) return text;
  return toNSString(std::u16string_view(visualLine(toUTF16(text), interfaceIsRightToLeft())));
}

NSArray* drawableLines(NSString* text, NSDictionary* attributes, CGFloat width) {
  NSMutableArray* lines = [NSMutableArray array];
  NSCharacterSet* ends = [NSCharacterSet characterSetWithCharactersInString:@"\r\n"];
  for (NSString* paragraph in [text componentsSeparatedByCharactersInSet:ends]) {
    NSString* line = nil;
    for (NSString* word in [paragraph componentsSeparatedByString:@" "]) {
      NSString* longer = line == nil ? word : [NSString stringWithFormat:@"%@ %@", line, word];
      if (line != nil && widthOf(drawable(longer), attributes) > width) {
        [lines addObject:drawable(line)];
        longer = word;
      }
      line = longer;
    }
    [lines addObject:drawable(line)];
  }
  return lines;
}

NSSize textSize(NSString* text, NSDictionary* attributes, CGFloat width) {
  if (!needsOrder(text)) {
    NSAttributedString* string = [[[NSAttributedString alloc] initWithString:text
                                                                  attributes:attributes] autorelease];
    return [string boundingRectWithSize:NSMakeSize(width, kEndless)
                                options:NSStringDrawingUsesLineFragmentOrigin]
        .size;
  }
  NSArray* lines = drawableLines(text, attributes, width);
  CGFloat widest = 0;
  for (NSString* line in lines) widest = std::max(widest, widthOf(line, attributes));
  return NSMakeSize(widest, static_cast<CGFloat>([lines count]) * lineHeight(attributes));
}

}  // namespace kr::theme

// Adds no instance variables: labels that were made already become of this class.
@interface KRLabelCell : NSTextFieldCell
@end

@implementation KRLabelCell

- (void)drawInteriorWithFrame:(NSRect)frame inView:(NSView*)view {
  NSAttributedString* whole = [self attributedStringValue];
  if (![self wraps]) return [super drawInteriorWithFrame:frame inView:view];
  if (!kr::theme::needsOrder([whole string])) {
    // On a scaled display the last character of a full line can reach a little beyond its end.
    frame.size.width -= kr::theme::kLabelInset;
    return [super drawInteriorWithFrame:frame inView:view];
  }
  NSDictionary* attributes = [whole attributesAtIndex:0 effectiveRange:nullptr];
  const NSRect room = NSInsetRect(frame, kr::theme::kLabelInset, 0);
  const CGFloat height = kr::theme::lineHeight(attributes);
  CGFloat top = NSMinY(room);
  for (NSString* line in kr::theme::drawableLines([whole string], attributes, NSWidth(room))) {
    const CGFloat left =
        interfaceIsRightToLeft() ? NSMaxX(room) - kr::theme::widthOf(line, attributes) : NSMinX(room);
    [line drawInRect:NSMakeRect(left, top, NSMaxX(room) - left + kr::theme::kLabelInset, height)
        withAttributes:attributes];
    top += height;
  }
}

@end

namespace kr::theme {

void drawInBothDirections(NSTextField* label) {
  if (interfaceIsRightToLeft()) [label setAlignment:NSTextAlignmentRight];
  NSCell* cell = [label cell];
  if ([cell isMemberOfClass:[NSTextFieldCell class]]) object_setClass(cell, [KRLabelCell class]);
}

}  // namespace kr::theme
