#import "installer/InstallerWinController.h"

#include "installer/WriteProbe.h"
#import "platform/cocoa/Bridging.h"

using kr::toBytes;

@implementation InstallerWinController (Permissions)

- (BOOL)canWriteToFile:(NSString*)path {
  return kr::canWriteToFile(toBytes(path));
}

- (BOOL)canWriteToDirectory:(NSString*)path {
  return kr::canWriteToDirectory(toBytes(path));
}

- (BOOL)canWriteToFileOrDirectory:(NSString*)path {
  return kr::canWriteToFileOrDirectory(toBytes(path));
}

- (BOOL)canWriteToPath:(NSString*)path {
  return kr::canWriteToPath(toBytes(path));
}

@end
