// A sound that makes none and writes down what is asked of it.
#pragma once

#import <AppKit/AppKit.h>

#include <string>
#include <vector>

@interface RecordingSound : NSSound {
 @public
  std::vector<std::string> calls;
  BOOL refusesDevices;  // raises when it is given a device
}
@end
