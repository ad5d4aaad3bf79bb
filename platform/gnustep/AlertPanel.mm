#import "platform/gnustep/AlertPanel.h"

#include <algorithm>
#include <cmath>
#include <utility>

#import "platform/cocoa/Bridging.h"
#import "platform/cocoa/Mirror.h"
#import "platform/gnustep/LabelText.h"
#import "platform/gnustep/Theme.h"
#import "platform/gnustep/UserLanguages.h"

using kr::platform::Alert;
using kr::platform::kFirstAlertButton;
using kr::theme::kButtonMargin;

namespace {

constexpr CGFloat kWidth = 480;
constexpr CGFloat kMargin = 24;
constexpr CGFloat kIconSide = 64;
constexpr CGFloat kIconGap = 20;
constexpr CGFloat kTextGap = 8;
constexpr CGFloat kButtonGap = 24;
constexpr CGFloat kButtonHeight = 32;
constexpr CGFloat kShortestButton = 112;
constexpr CGFloat kTitleMargin = 20;
constexpr CGFloat kMessageSize = 14;
constexpr CGFloat kInformativeSize = 12;
// What stays free above and below the highest of panels.
constexpr CGFloat kScreenMargin = 60;

NSTextField* label(const std::string& text, NSFont* font, NSString* color, CGFloat width) {
  NSTextField* field = [[[NSTextField alloc] initWithFrame:NSMakeRect(0, 0, width, 0)] autorelease];
  [field setEditable:NO];
  [field setSelectable:NO];
  [field setBordered:NO];
  [field setBezeled:NO];
  [field setDrawsBackground:NO];
  [field setFont:font];
  [field setTextColor:[NSColor colorWithCatalogName:@"System" colorName:color]];
  [[field cell] setWraps:YES];
  [[field cell] setLineBreakMode:NSLineBreakByWordWrapping];
  [field setStringValue:kr::toNSString(text)];
  kr::theme::drawInBothDirections(field);
  // The cell itself measures a single line.
  const NSSize lines = kr::theme::textSize([field stringValue], @{NSFontAttributeName : font},
                                           width - 2 * kr::theme::kLabelInset);
  [field setFrameSize:NSMakeSize(width, std::ceil(lines.height))];
  return field;
}

NSImageView* iconView(const std::string& name) {
  NSImage* image = [NSImage imageNamed:kr::toNSString(name)];
  NSImageView* view =
      [[[NSImageView alloc] initWithFrame:NSMakeRect(0, 0, kIconSide, kIconSide)] autorelease];
  [view setImage:image ? image : [NSApp applicationIconImage]];
  [view setImageScaling:NSImageScaleProportionallyUpOrDown];
  return view;
}

NSButton* pushButton(const std::string& title, NSInteger code) {
  NSButton* button = [[[NSButton alloc] initWithFrame:NSZeroRect] autorelease];
  [button setBezelStyle:NSRoundedBezelStyle];
  [button setTitle:kr::toNSString(title)];
  [button setTag:code];
  [button setAction:@selector(press:)];
  const CGFloat titleWidth =
      [kr::theme::drawable([button title]) sizeWithAttributes:@{NSFontAttributeName : [button font]}].width;
  const CGFloat width = std::ceil(titleWidth) + 2 * (kTitleMargin + kButtonMargin);
  [button setFrameSize:NSMakeSize(std::max(width, kShortestButton), kButtonHeight)];
  return button;
}

}  // namespace

@implementation KRAlertPanel

- (instancetype)initWithAlert:(const Alert&)alert {
  const CGFloat textLeft = kMargin + kIconSide + kIconGap;
  const CGFloat textWidth = kWidth - kMargin - textLeft;
  NSTextField* message =
      label(alert.message, [NSFont boldSystemFontOfSize:kMessageSize], @"labelColor", textWidth);
  NSTextField* informative =
      label(alert.informative, [NSFont systemFontOfSize:kInformativeSize], @"secondaryLabelColor", textWidth);
  // A text that is too long for the screen loses its end, and the buttons stay where they can be reached.
  const CGFloat around = 2 * kMargin + kTextGap + kButtonGap + kButtonHeight;
  const CGFloat room = NSHeight([[NSScreen mainScreen] visibleFrame]) - 2 * kScreenMargin - around;
  const CGFloat informativeHeight = std::min(NSHeight([informative frame]), room / 2);
  const CGFloat messageHeight = std::min(NSHeight([message frame]), room - informativeHeight);
  const CGFloat textHeight = std::max(messageHeight + kTextGap + informativeHeight, kIconSide);
  const CGFloat height = 2 * kMargin + textHeight + kButtonGap + kButtonHeight;

  self = [super initWithContentRect:NSMakeRect(0, 0, kWidth, height)
                          styleMask:NSTitledWindowMask | NSClosableWindowMask
                            backing:NSBackingStoreBuffered
                              defer:NO];
  if (self == nil) return nil;
  [self setReleasedWhenClosed:NO];
  [self setHidesOnDeactivate:NO];
  const CGFloat top = height - kMargin;
  [self place:iconView(alert.icon) at:NSMakePoint(kMargin, top - kIconSide)];
  [message setFrameSize:NSMakeSize(textWidth, messageHeight)];
  [self place:message at:NSMakePoint(textLeft, top - messageHeight)];
  [informative setFrameSize:NSMakeSize(textWidth, informativeHeight)];
  [self place:informative at:NSMakePoint(textLeft, top - messageHeight - kTextGap - informativeHeight)];
  [self addButtons:alert.buttons];
  if (kr::platform::interfaceIsRightToLeft()) kr::platform::mirror([self contentView]);
  return self;
}

- (void)dealloc {
  [owner release];
  delete ended;
  [super dealloc];
}

- (void)place:(NSView*)view at:(NSPoint)origin {
  [view setFrameOrigin:origin];
  [[self contentView] addSubview:view];
}

- (void)addButtons:(const std::vector<std::string>&)titles {
  CGFloat right = kWidth - kMargin + kButtonMargin;
  NSButton* first = nil;
  NSButton* previous = nil;
  for (const std::string& title : titles) {
    NSButton* button =
        pushButton(title, kFirstAlertButton + (previous ? [previous tag] + 1 - kFirstAlertButton : 0));
    [button setTarget:self];
    right -= NSWidth([button frame]);
    [self place:button at:NSMakePoint(right, kMargin)];
    if (first == nil) {
      first = button;
      [button setKeyEquivalent:@"\r"];
    }
    [previous setNextKeyView:button];
    previous = button;
  }
  [previous setNextKeyView:first];
  [self setInitialFirstResponder:first];
}

- (void)beginSheetForWindow:(NSWindow*)window ended:(kr::platform::Alerts::Ended)callback {
  owner = [window retain];
  ended = new kr::platform::Alerts::Ended(std::move(callback));
  [self setTitle:[window title]];
  // A sheet of the toolkit runs a loop of its own, in which an application that does not run yet cannot be
  // ended.
  [self performSelector:@selector(run) withObject:nil afterDelay:0];
}

- (void)run {
  [NSApp beginSheet:self
      modalForWindow:owner
       modalDelegate:self
      didEndSelector:@selector(sheet:ended:context:)
         contextInfo:nullptr];
}

- (void)press:(id)sender {
  [NSApp endSheet:self returnCode:[sender tag]];
}

// A window manager ends the program of a window that cannot be closed.
- (BOOL)windowShouldClose:(id)sender {
  [NSApp endSheet:self returnCode:kFirstAlertButton];
  return NO;
}

- (void)sheet:(NSWindow*)sheet ended:(NSInteger)code context:(void*)context {
  [self orderOut:nil];
  (*ended)(self, code);
}

@end
