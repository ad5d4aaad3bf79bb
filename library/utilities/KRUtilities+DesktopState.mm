#import "library/utilities/KRUtilities.h"

#include "library/utilities/MenuBarMonitor.h"

void InstallMenuBarEventMonitor() {
  kr::MenuBarMonitor::shared().install();
}

int32_t MonitorMenuBarEventHandler(uint32_t eventClass, uint32_t kind) {
  return kr::MenuBarMonitor::shared().handle({.eventClass = eventClass, .kind = kind});
}

@implementation KRUtilities (DesktopState)

+ (BOOL)fullScreenMode {
  InstallMenuBarEventMonitor();
  return kr::MenuBarMonitor::shared().menuBarIsHidden();
}

@end
