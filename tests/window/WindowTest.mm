#import "tests/window/WindowTest.h"

#include <objc/runtime.h>

#include <algorithm>

#import "platform/cocoa/Bridging.h"
#import "platform/cocoa/PrepareApplication.h"

namespace kr::testing {
namespace {

int gRequestsToEnd;

NSApplicationTerminateReply countRequest(id, SEL, NSApplication*) {
  ++gRequestsToEnd;
  return NSTerminateCancel;
}

}  // namespace

WindowTest::WindowTest(bool withBus)
    : processControl_(processes_),
      desktop_({.display = true, .windowManager = true, .bus = withBus}),
      home_("HOME", scratch_.folder("home")),
      pool_([[NSAutoreleasePool alloc] init]) {
  folders_.homeFolder = scratch_ / "home";
  folders_.local = scratch_.folder("Applications");
  folders_.user = scratch_ / "home/Applications";
  platform::Services set = platform::services();
  set.alerts = &alerts_;
  set.applications = &applications_;
  set.clock = &clock_;
  set.folders = &folders_;
  set.log = &log_;
  set.loginItems = &loginItems_;
  set.processControl = &processControl_;
  set.processes = &processes_;
  set.program = &program_;
  set.systemVersion = &systemVersion_;
  set.windowOrder = &windowOrder_;
  services_.emplace(set);
}

WindowTest::~WindowTest() {
  [[controller_ window] orderOut:nil];
  services_.reset();
  [pool_ release];
}

std::string WindowTest::product(const std::string& name) {
  scratch_.file("disk/" + name + "/Contents/Info.plist",
                platform::testing::propertyListText({{"CFBundleSignature", "VmNt"},
                                                     {"CFBundleShortVersionString", "2.1"},
                                                     {"CFBundleExecutable", "Notes"}}));
  scratch_.file("disk/" + name + "/Contents/MacOS/Notes", "program");
  return scratch_ / "disk/" + name;
}

void WindowTest::load(const Lines& arguments) {
  program_.words = {"VelmoraInstaller", "-AppleLanguages", "(en)"};
  program_.words.insert(program_.words.end(), arguments.begin(), arguments.end());
  platform::prepareApplication();
  NSApplication* application = [NSApplication sharedApplication];
  ASSERT_TRUE([NSBundle loadNibNamed:@"MainMenu" owner:application]);
  controller_ = static_cast<InstallerWinController*>([application delegate]);
  ASSERT_NE(controller_, nil);
  [application finishLaunching];
}

bool WindowTest::runUntil(const std::function<bool()>& condition, double seconds) {
  NSDate* end = [NSDate dateWithTimeIntervalSinceNow:seconds];
  while (!condition()) {
    if ([end timeIntervalSinceNow] < 0) return false;
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    NSEvent* event = [NSApp nextEventMatchingMask:NSAnyEventMask
                                        untilDate:[NSDate dateWithTimeIntervalSinceNow:0.02]
                                           inMode:NSDefaultRunLoopMode
                                          dequeue:YES];
    if (event != nil) [NSApp sendEvent:event];
    [pool release];
  }
  return true;
}

void WindowTest::refuseToEnd() {
  gRequestsToEnd = 0;
  class_addMethod([InstallerWinController class], @selector(applicationShouldTerminate:),
                  reinterpret_cast<IMP>(countRequest), "I@:@");
}

int WindowTest::requestsToEnd() const {
  return gRequestsToEnd;
}

void WindowTest::press(NSButton* button) {
  ASSERT_FALSE([button isHidden]);
  ASSERT_TRUE([button isEnabled]) << title(button);
  [button performClick:nil];
}

std::string WindowTest::title(NSButton* button) const {
  return toBytes([button title]);
}

std::string WindowTest::text(NSTextField* field) const {
  return toBytes([field stringValue]);
}

NSInteger WindowTest::page() const {
  return [controller_->tabView indexOfTabViewItem:[controller_->tabView selectedTabViewItem]];
}

bool WindowTest::logHas(const std::string& line) const {
  const Lines lines = log_.lines();
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

}  // namespace kr::testing
