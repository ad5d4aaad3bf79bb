#import "installer/InstallerWinController.h"

#import "installer/KRInstallerInterface.h"
#import "library/sound/SoundExtensions.h"

@implementation InstallerWinController (Sound)

- (void)playDoneSound {
  if (![[self argument:KRInstallerCompletionSound] isEqualToString:@"YES"]) return;
  NSSound* sound = [NSSound soundNamed:@"Done"];
  [sound setVolume:[NSSound alertVolume]];
  [sound playAsSoundEffect];
}

@end
