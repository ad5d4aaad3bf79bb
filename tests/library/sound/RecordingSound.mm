#import "tests/library/sound/RecordingSound.h"

#import "platform/cocoa/Bridging.h"

@implementation RecordingSound

- (NSString*)description {
  return @"<sound>";
}

- (void)setPlaybackDeviceIdentifier:(NSString*)identifier {
  calls.push_back("device " + kr::toOptionalBytes(identifier).value_or("(nil)"));
  if (refusesDevices && identifier != nil) {
    [NSException raise:NSInvalidArgumentException format:@"no such device"];
  }
}

- (NSTimeInterval)duration {
  calls.push_back("duration");
  return 1;
}

- (BOOL)play {
  calls.push_back("play");
  return YES;
}

@end
