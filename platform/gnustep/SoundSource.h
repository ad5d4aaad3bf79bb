// What a sound is read from: the decoder behind NSSound on GNUstep. One thread at a time, as NSSound sees to.
#pragma once

#import <Foundation/Foundation.h>
#import <GNUstepGUI/GSSoundSource.h>

#include <memory>

#include "platform/linux/SoundFile.h"

@interface KRSoundSource : NSObject <GSSoundSource> {
  NSData* data;
  std::unique_ptr<kr::platform::SoundFile> file;
}
@end
