#import <AppKit/AppKit.h>

#include "platform/PrepareApplication.h"

int main(int argc, const char* argv[]) {
  kr::platform::prepareApplication();
  return NSApplicationMain(argc, argv);
}
