// Further operations of sounds: finding sound files, playing on the device that the user has chosen for
// alerts and sound effects, as loud as alerts are, and waking sound hardware that is asleep. Any thread.
#pragma once

#import <AppKit/AppKit.h>

@interface NSSound (SoundExtensions)

#pragma mark Sound files

// Every extension of a sound file. Case counts.
+ (NSSet*)soundFileExtensions;

+ (BOOL)isSoundFileAtPath:(NSString*)path;

// Paths of the sound files among the application's resources, in the order of its bundle.
+ (NSArray*)applicationSoundFiles;

// Their names, sorted, without that of the silent sound.
+ (NSArray*)applicationSounds;

// Paths of the sound files in the system's folders for sounds: its own, the machine's, the user's.
+ (NSArray*)systemSoundFiles;

// Their names, each once, sorted.
+ (NSArray*)systemSounds;

// The file of the sound with this name: the application's own, else the system's; nil when there is none.
+ (NSString*)pathOfSound:(NSString*)name;

#pragma mark Playing

// The volume that alerts play with, from 0 to 1, as the user has set it in the system; 1 when it is not set.
+ (float)alertVolume;

// Plays the sound on the device for sound effects, or on the default device where that one cannot be had.
// Returns at once; the sound plays on. The user default "soundLog" logs every step.
- (void)playAsSoundEffect;

// The identifier of the device for alerts and sound effects, asked in the output scope, and in the global
// scope; nil when it cannot be told.
- (NSString*)systemAudioDeviceID;
- (NSString*)_alertSoundAlertDeviceIdentifier;

// The identifier of that device as the system's settings file has it; nil when it has none.
- (NSString*)soundEffectDeviceID;

// Logs every sound device.
- (void)listAudioDevices;

#pragma mark Waking the hardware

// Notes that a sound starts now.
+ (void)setSoundDateNow;

// Wakes the sound hardware when no sound was started for a while. Returns at once.
+ (void)prepareForSound;

// Plays the application's silent sound. What prepareForSound runs on a thread of its own.
+ (void)playSilentSoundThread;

@end
