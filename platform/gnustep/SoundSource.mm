#import "platform/gnustep/SoundSource.h"

#import "platform/cocoa/Bridging.h"

using kr::platform::SoundFile;

namespace {

std::span<const std::byte> bytesOf(NSData* data) {
  return {static_cast<const std::byte*>([data bytes]), [data length]};
}

}  // namespace

@implementation KRSoundSource

+ (NSArray*)soundUnfilteredFileTypes {
  NSMutableArray* types = [NSMutableArray array];
  for (const std::string_view one : SoundFile::extensions()) [types addObject:kr::toNSString(one)];
  return types;
}

+ (NSArray*)soundUnfilteredTypes {
  return @[
    @"com.microsoft.waveform-audio", @"public.aiff-audio", @"public.aifc-audio", @"public.ulaw-audio",
    @"public.mp3", @"org.xiph.flac", @"org.xiph.ogg-audio", @"com.apple.coreaudio-format"
  ];
}

+ (BOOL)canInitWithData:(NSData*)bytes {
  return SoundFile::open(bytesOf(bytes)) != nullptr;
}

- (id)initWithData:(NSData*)bytes {
  self = [super init];
  if (self == nil) return nil;
  data = [bytes retain];
  file = SoundFile::open(bytesOf(data));
  if (file) return self;
  [self release];
  return nil;
}

- (void)dealloc {
  file.reset();
  [data release];
  [super dealloc];
}

- (NSUInteger)readBytes:(void*)bytes length:(NSUInteger)length {
  return file->read({static_cast<float*>(bytes), length / sizeof(float)}) * sizeof(float);
}

- (NSTimeInterval)duration {
  return file->duration();
}

- (void)setCurrentTime:(NSTimeInterval)seconds {
  file->setPosition(seconds);
}

- (NSTimeInterval)currentTime {
  return file->position();
}

- (int)encoding {
  return GSSoundFormatFloat32;
}

- (NSUInteger)channelCount {
  return file->channels();
}

- (NSUInteger)sampleRate {
  return file->framesPerSecond();
}

- (NSByteOrder)byteOrder {
  return static_cast<NSByteOrder>(NSHostByteOrder());
}

@end
