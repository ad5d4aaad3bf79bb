// GNUstep's NSSound finds what it plays with among bundles in library folders, and loads every one of them
// with every sound library that they can use: a third of a second in which the application stands still, for
// a volume that cannot be set and a device that cannot be chosen. These methods take their place; the rest of
// NSSound is GNUstep's.
#import <AppKit/AppKit.h>

#include <array>

#import "platform/gnustep/SoundSink.h"
#import "platform/gnustep/SoundSource.h"

namespace {

// The condition under which a sound that was started is not paused.
constexpr NSInteger kMayPlay = 1;

// Sounds by name. A sound that has a name is kept.
NSMutableDictionary* gNamed;

NSString* fileInMainBundle(NSString* name, NSString* type) {
  return [[NSBundle mainBundle] pathForResource:name ofType:type];
}

NSString* fileInLibraries(NSString* name, NSString* type) {
  return [NSBundle pathForLibraryResource:name ofType:type inDirectory:@"Sounds"];
}

// The file with the name and the extension of a sound, which may be a part of the name already; nil when
// there is none.
NSString* soundFile(NSString* name, NSString* (*find)(NSString*, NSString*)) {
  NSArray* types = [NSSound soundUnfilteredFileTypes];
  NSString* type = [name pathExtension];
  if ([types containsObject:type]) return find([name stringByDeletingPathExtension], type);
  for (NSString* one in types) {
    NSString* path = find(name, one);
    if ([path length] > 0) return path;
  }
  return nil;
}

}  // namespace

@interface NSSound (KRPlayback)
- (void)_stream;
- (BOOL)playToTheEnd;
@end

// A method of GNUstep's: the sound has ended and can be played again. Main thread.
@interface NSSound (KREnd)
- (void)_finished:(NSNumber*)whole;
@end

#pragma clang diagnostic push
// Which is what is meant: on this runtime the methods of a category that is loaded later win.
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"

@implementation NSSound (KRPlayback)

// In place of the one that loads the bundles.
+ (void)initialize {
  if (self != [NSSound class]) return;
  [self setVersion:2];
  gNamed = [[NSMutableDictionary alloc] init];
}

+ (NSArray*)soundUnfilteredFileTypes {
  return [KRSoundSource soundUnfilteredFileTypes];
}

+ (NSArray*)soundUnfilteredTypes {
  return [KRSoundSource soundUnfilteredTypes];
}

- (id)initWithData:(NSData*)data {
  _data = [data retain];
  _source = [[KRSoundSource alloc] initWithData:data];
  _sink = [[KRSoundSink alloc] initWithEncoding:[_source encoding]
                                       channels:[_source channelCount]
                                     sampleRate:[_source sampleRate]
                                      byteOrder:[_source byteOrder]];
  if (_source != nil && _sink != nil) return self;
  [self release];
  return nil;
}

// GNUstep's copies share a decoder that only one of them owns.
- (id)copyWithZone:(NSZone*)zone {
  NSSound* copy = [[NSSound allocWithZone:zone] initWithData:_data];
  [copy setVolume:[self volume]];
  [copy setLoops:[self loops]];
  [copy setPlaybackDeviceIdentifier:[self playbackDeviceIdentifier]];
  return copy;
}

+ (id)soundNamed:(NSString*)name {
  if (name == nil) return nil;
  @synchronized(gNamed) {
    NSSound* sound = [gNamed objectForKey:name];
    if (sound != nil) return sound;
    NSString* path = soundFile(name, fileInMainBundle);
    if ([path length] == 0) path = soundFile(name, fileInLibraries);
    if ([path length] == 0) return nil;
    sound = [[[NSSound alloc] initWithContentsOfFile:path byReference:NO] autorelease];
    [sound setName:name];
    return sound;
  }
}

- (BOOL)setName:(NSString*)name {
  @synchronized(gNamed) {
    if (name == nil || [gNamed objectForKey:name] != nil) return NO;
    if (_name != nil && [gNamed objectForKey:_name] == self) {
      [[self retain] autorelease];
      [gNamed removeObjectForKey:_name];
    }
    [_name release];
    _name = [name copy];
    [gNamed setObject:self forKey:_name];
    return YES;
  }
}

// The thread that -play starts. GNUstep's has no autorelease pool, waits for the main thread at the end, and
// plays a repeated sound for ever on a server that is gone.
- (void)_stream {
  @autoreleasepool {
    const BOOL whole = [_sink open] && [self playToTheEnd];
    [self performSelectorOnMainThread:@selector(_finished:)
                           withObject:[NSNumber numberWithBool:whole]
                        waitUntilDone:NO];
  }
}

// Whether it got there: it was not stopped, and the server took all of it.
- (BOOL)playToTheEnd {
  KRSoundSink* sink = static_cast<KRSoundSink*>(_sink);
  std::array<float, 4096> samples;
  bool taken = true;
  do {
    for (NSUInteger size = 1; size > 0 && taken && !_shouldStop;) {
      [_readLock lockWhenCondition:kMayPlay];
      size = _shouldStop ? 0 : [_source readBytes:samples.data() length:sizeof samples];
      [_readLock unlock];
      if (size > 0) taken = [sink playBytes:samples.data() length:size];
    }
    [_source setCurrentTime:0];
  } while (_shouldLoop && taken && !_shouldStop && [_source duration] > 0);
  const bool whole = taken && !_shouldStop;
  if (whole) [sink finish];
  [sink close];
  return whole;
}

// GNUstep's wait until the sound server has taken what is being written.
- (void)setVolume:(float)volume {
  [_sink setVolume:volume];
}

- (void)setPlaybackDeviceIdentifier:(NSString*)identifier {
  if (![KRSoundSink canInitWithPlaybackDevice:identifier]) {
    [NSException raise:NSInvalidArgumentException format:@"no sound device %@", identifier];
  }
  [_sink setPlaybackDeviceIdentifier:identifier];
}

@end

#pragma clang diagnostic pop
