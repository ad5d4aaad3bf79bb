#import "library/sound/SoundExtensions.h"

#include <unistd.h>

#include <cmath>
#include <string_view>

#include "library/sound/AlertVolume.h"
#include "library/sound/LastSound.h"
#include "library/sound/SoundEffectDevice.h"
#import "library/sound/SoundEffectSettings.h"
#include "library/sound/SoundFiles.h"
#include "library/utilities/SystemLevels.h"
#include "platform/Clock.h"
#include "platform/Log.h"
#include "platform/Services.h"
#include "platform/StandardFolders.h"
#import "platform/cocoa/Bridging.h"
#import "platform/cocoa/PropertyLists.h"
#include "platform/posix/Files.h"

using kr::toBytes;
using kr::toNSString;
using kr::platform::services;

namespace {

NSString* const kSilentSound = @"SoundOfSilence";
constexpr float kSilentVolume = 0.01F;

NSString* const kSoundLog = @"soundLog";
NSString* const kAlertSuite = @"com.apple.systemsound";
NSString* const kAlertVolume = @"com.apple.sound.beep.volume";
constexpr const char* kAudioSettings = "/Library/Preferences/Audio/com.apple.audio.SystemSettings.plist";

std::vector<std::string> applicationFiles() {
  return kr::soundFiles(kr::toByteStrings([[NSBundle mainBundle] pathsForResourcesOfType:nil
                                                                             inDirectory:nil]));
}

std::vector<std::string> systemFiles() {
  return kr::soundFilesInFolders(kr::systemSoundFolders(services().folders->home()));
}

// The number that a setting holds; none when it holds something else. Settings that were given on a command
// line are texts.
std::optional<float> numberIn(id setting) {
  if ([setting isKindOfClass:[NSString class]]) {
    NSScanner* scanner = [NSScanner scannerWithString:setting];
    float number = 0;
    if (![scanner scanFloat:&number] || ![scanner isAtEnd]) return std::nullopt;
    return number;
  }
  if (![setting isKindOfClass:[NSNumber class]] || std::isnan([setting floatValue])) return std::nullopt;
  return [setting floatValue];
}

}  // namespace

@implementation NSSound (SoundExtensions)

#pragma mark Sound files

+ (NSSet*)soundFileExtensions {
  static NSSet* const extensions = [] {
    NSMutableSet* set = [NSMutableSet set];
    for (const std::string_view one : kr::soundFileExtensions()) [set addObject:toNSString(one)];
    return [set copy];
  }();
  return extensions;
}

+ (BOOL)isSoundFileAtPath:(NSString*)path {
  return kr::isSoundFile(toBytes(path));
}

+ (NSArray*)applicationSoundFiles {
  return kr::toNSArray(applicationFiles());
}

+ (NSArray*)applicationSounds {
  NSMutableArray* names = [NSMutableArray array];
  for (const std::string& file : applicationFiles()) [names addObject:toNSString(kr::soundName(file))];
  [names removeObject:kSilentSound];
  return [names sortedArrayUsingSelector:@selector(compare:)];
}

+ (NSArray*)systemSoundFiles {
  return kr::toNSArray(systemFiles());
}

+ (NSArray*)systemSounds {
  NSMutableSet* names = [NSMutableSet set];
  for (const std::string& file : systemFiles()) [names addObject:toNSString(kr::soundName(file))];
  return [[names allObjects] sortedArrayUsingSelector:@selector(compare:)];
}

+ (NSString*)pathOfSound:(NSString*)name {
  if (name == nil) return nil;
  const std::string wanted = toBytes(name);
  std::optional<std::string> path = kr::fileOfSound(wanted, applicationFiles());
  if (!path) path = kr::fileOfSound(wanted, systemFiles());
  return toNSString(path);
}

#pragma mark Playing

+ (float)alertVolume {
  NSUserDefaults* defaults = [NSUserDefaults standardUserDefaults];
  [defaults addSuiteNamed:kAlertSuite];
  const std::optional<float> stored = numberIn([defaults objectForKey:kAlertVolume]);
  return stored ? kr::playbackVolume(*stored) : 1.0F;
}

- (void)playAsSoundEffect {
  const BOOL logs = [[NSUserDefaults standardUserDefaults] boolForKey:kSoundLog];
  if (logs) {
    kr::log("playAsSoundEffect: %@", toBytes([self description]));
    [self listAudioDevices];
  }
  NSString* device = [self systemAudioDeviceID];
  if (logs) kr::log("+SL: soundEffectID=%@", kr::toOptionalBytes(device));
  if (device != nil) {
    if (logs) kr::log("+SL: setPlaybackDeviceIdentifier:%@", toBytes(device));
    @try {
      [self setPlaybackDeviceIdentifier:device];
    } @catch (NSException* exception) {
      if (logs) kr::log("+SL: exception %@", toBytes([exception description]));
      [self setPlaybackDeviceIdentifier:nil];
    }
  }
  if (logs) kr::log("+SL: play self (%@)", toBytes([self description]));
  // Asked first, a sound has been read when it is to play.
  (void)[self duration];
  [self play];
  [NSSound setSoundDateNow];
}

- (NSString*)systemAudioDeviceID {
  return toNSString(kr::systemOutputIdentifier(kr::platform::AudioScope::output));
}

- (NSString*)_alertSoundAlertDeviceIdentifier {
  return toNSString(kr::systemOutputIdentifier(kr::platform::AudioScope::global));
}

- (NSString*)soundEffectDeviceID {
  const std::optional<std::string> bytes = kr::files::contents(kAudioSettings);
  NSDictionary* settings = bytes ? kr::propertyListDictionary(*bytes) : nil;
  return kr::soundEffectDeviceInSettings(settings, kr::isOfLevel(kr::SystemLevel::yosemiteOrNewer),
                                         ::getuid());
}

- (void)listAudioDevices {
  for (const std::string& line : kr::audioDeviceLines()) kr::log("%@", line);
}

#pragma mark Waking the hardware

+ (void)setSoundDateNow {
  kr::setLastSoundTime(services().clock->wallSeconds());
}

+ (void)prepareForSound {
  if (!kr::needsWaking(kr::lastSoundTime(), services().clock->wallSeconds())) return;
  [NSSound setSoundDateNow];
  [NSThread detachNewThreadSelector:@selector(playSilentSoundThread) toTarget:[NSSound class] withObject:nil];
}

+ (void)playSilentSoundThread {
  @autoreleasepool {
    @synchronized([NSSound class]) {
      static NSSound* silence;
      if (silence == nil) {
        silence = [[NSSound soundNamed:kSilentSound] retain];
        [silence setVolume:kSilentVolume];
      }
      [silence playAsSoundEffect];
    }
  }
}

@end
