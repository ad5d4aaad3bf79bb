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
  set.desktopAppearance = &desktopAppearance_;
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

Lines WindowTest::visibleParts() const {
  struct Part {
    std::string name;
    NSView* view;
  };
  const std::vector<Part> all{{"icon", controller_->iconField},
                              {"name", controller_->nameField},
                              {"checkmark", controller_->checkmarkField},
                              {"intro", controller_->introField},
                              {"path", controller_->pathField},
                              {"explanation", controller_->explanationField},
                              {"message", controller_->messageField},
                              {"read-me", [controller_->readMeTextView enclosingScrollView]},
                              {"progress", controller_->progressIndicator},
                              {"help", controller_->helpButton},
                              {"cancel", controller_->cancelButton},
                              {"install", controller_->installButton}};
  std::vector<std::pair<NSRect, std::string>> seen;
  for (const Part& part : all) {
    if ([part.view isHiddenOrHasHiddenAncestor] || [part.view window] == nil) continue;
    // It is seen while it runs only.
    if (part.view == controller_->progressIndicator && ![[part.view valueForKey:@"isRunning"] boolValue])
      continue;
    seen.emplace_back([part.view convertRect:[part.view bounds] toView:nil], part.name);
  }
  std::stable_sort(seen.begin(), seen.end(), [](const auto& one, const auto& other) {
    // Parts stand beside each other when the middle of one is within the other.
    if (NSMidY(one.first) > NSMinY(other.first) && NSMidY(one.first) < NSMaxY(other.first)) {
      return NSMinX(one.first) < NSMinX(other.first);
    }
    return NSMidY(one.first) > NSMidY(other.first);
  });
  Lines names;
  for (const auto& part : seen) names.push_back(part.second);
  return names;
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
