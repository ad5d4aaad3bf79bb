// GNUstep's NSSound finds what it plays with among bundles in library folders, and loads every one of them
// with every sound library that they can use: a third of a second in which the application stands still, for
// a volume that cannot be set and a device that cannot be chosen. These methods take their place; the rest of
// NSSound is GNUstep's.
#import <AppKit/AppKit.h>

#import "platform/gnustep/SoundSink.h"
#import "platform/gnustep/SoundSource.h"

namespace {

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
