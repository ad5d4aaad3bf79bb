// Where a sound goes: a device of the sound server, behind NSSound on GNUstep. Volume and device may be set
// from any thread at any time, without waiting; the device counts from the next time that the sound is
// played.
#pragma once

#import <Foundation/Foundation.h>
#import <GNUstepGUI/GSSoundSink.h>

#include <atomic>
#include <mutex>
#include <optional>
#include <string>

#include "platform/linux/PulsePlayback.h"

@interface KRSoundSink : NSObject <GSSoundSink> {
  kr::platform::PulseFormat format;
  kr::platform::PulsePlayback playback;
  std::atomic<float> gain;
  std::mutex mutex;
  std::optional<std::string> device;
}

// Waits until all that was played has been heard; without it, closing drops the rest.
- (void)finish;

@end
