#import "platform/gnustep/ImageTypes.h"

#import <AppKit/AppKit.h>

namespace kr::theme {

void keepOwnImageTypes() {
  Class reader = NSClassFromString(@"GSImageMagickImageRep");
  if (reader != Nil) [NSImageRep unregisterImageRepClass:reader];
}

}  // namespace kr::theme
