#import "tests/support/DrawnWindow.h"

#import "platform/cocoa/PrepareApplication.h"

namespace kr::testing {

std::unique_ptr<Desktop> DrawnWindow::desktop_;

void DrawnWindow::SetUpTestSuite() {
  startDesktop({.display = true, .windowManager = true});
}

void DrawnWindow::startDesktop(DesktopParts parts) {
  desktop_ = std::make_unique<Desktop>(parts);
  @autoreleasepool {
    platform::prepareApplication();
    [NSApp finishLaunching];
  }
}

void DrawnWindow::TearDownTestSuite() {
  desktop_.reset();
}

DrawnWindow::DrawnWindow() : pool_([[NSAutoreleasePool alloc] init]) {
  window_ = [[NSWindow alloc] initWithContentRect:NSMakeRect(50, 50, kSide, kSide)
                                        styleMask:NSTitledWindowMask
                                          backing:NSBackingStoreBuffered
                                            defer:NO];
  [window_ setReleasedWhenClosed:NO];
}

DrawnWindow::~DrawnWindow() {
  [window_ close];
  [window_ release];
  [pool_ release];
}

void DrawnWindow::show() {
  [window_ orderFrontRegardless];
  ASSERT_TRUE(runUntil([this] { return [window_ isVisible]; }));
  [window_ display];
}

void DrawnWindow::run(double seconds) {
  runUntil([] { return false; }, seconds);
}

bool DrawnWindow::runUntil(const std::function<bool()>& condition, double seconds) {
  NSDate* end = [NSDate dateWithTimeIntervalSinceNow:seconds];
  while (!condition()) {
    if ([end timeIntervalSinceNow] <= 0) return false;
    @autoreleasepool {
      NSEvent* event = [NSApp nextEventMatchingMask:NSAnyEventMask
                                          untilDate:[NSDate dateWithTimeIntervalSinceNow:0.005]
                                             inMode:NSDefaultRunLoopMode
                                            dequeue:YES];
      if (event != nil) [NSApp sendEvent:event];
    }
  }
  return true;
}

int DrawnWindow::shownColor(NSView* view) {
  [view lockFocus];
  const NSRect visible = [view visibleRect];
  const NSRect pixel = NSMakeRect(NSMidX(visible), NSMidY(visible), 1, 1);
  NSBitmapImageRep* image = [[[NSBitmapImageRep alloc] initWithFocusedViewRect:pixel] autorelease];
  [view unlockFocus];
  NSUInteger values[5] = {};
  [image getPixel:values atX:0 y:0];
  return static_cast<int>(values[0] << 16 | values[1] << 8 | values[2]);
}

}  // namespace kr::testing
