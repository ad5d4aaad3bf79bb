#import <AppKit/AppKit.h>

#import "platform/cocoa/PrepareApplication.h"

int main(int argc, const char* argv[]) {
  kr::platform::prepareApplication();
  return NSApplicationMain(argc, argv);
}
