#import "platform/gnustep/SoundSink.h"

#include <algorithm>
#include <span>

#include "platform/AudioDevices.h"
#include "platform/Services.h"
#import "platform/cocoa/Bridging.h"

@implementation KRSoundSink

+ (BOOL)canInitWithPlaybackDevice:(NSString*)identifier {
  if (identifier == nil) return YES;
  const std::vector<kr::platform::AudioDevice> devices = kr::platform::services().audioDevices->all();
  return std::any_of(devices.begin(), devices.end(),
                     [wanted = kr::toBytes(identifier)](const kr::platform::AudioDevice& one) {
                       return one.identifier == wanted;
                     });
}

- (id)initWithEncoding:(int)encoding
              channels:(NSUInteger)channels
            sampleRate:(NSUInteger)rate
             byteOrder:(NSByteOrder)order {
  self = [super init];
  if (self == nil) return nil;
  format = {static_cast<std::uint32_t>(rate), static_cast<std::uint8_t>(channels)};
  gain = 1;
  return self;
}

- (BOOL)open {
  std::optional<std::string> wanted;
  {
    const std::lock_guard lock(mutex);
    wanted = device;
  }
  return playback.open(format, wanted);
}

- (void)finish {
  playback.finish();
}

- (void)close {
  playback.close();
}

- (BOOL)playBytes:(void*)bytes length:(NSUInteger)length {
  const std::span samples(static_cast<float*>(bytes), length / sizeof(float));
  // Here, and not on the server: there it could be the volume of the whole device, by the user's settings.
  const float factor = gain;
  for (float& sample : samples) sample *= factor;
  return playback.write(samples);
}

- (void)setVolume:(float)volume {
  gain = std::clamp(volume, 0.0F, 1.0F);
}

- (float)volume {
  return gain;
}

- (void)setPlaybackDeviceIdentifier:(NSString*)identifier {
  const std::lock_guard lock(mutex);
  device = kr::toOptionalBytes(identifier);
}

- (NSString*)playbackDeviceIdentifier {
  const std::lock_guard lock(mutex);
  return kr::toNSString(device);
}

// Channels go to the device in the order in which they are in the file.
- (void)setChannelMapping:(NSArray*)mapping {
}

- (NSArray*)channelMapping {
  return nil;
}

@end
