// One object per running application: who it is, what the system knows of it, and what can be asked of it.
// Objects are shared: while a process runs, every lookup of it answers the same object out of one cache,
// which lets go of it at the first clean-up after the process has ended. Nothing here raises; what cannot be
// had reads as null, the empty text, 0, NO or "1.0". Lookups, the cache and the properties may be used on any
// thread.
#pragma once

#import <AppKit/AppKit.h>

#include <sys/types.h>

#include <cstdint>

#include "platform/SerialNumber.h"

namespace kr::platform {
class AccessibilityObserver;
class AccessibleApplication;
}  // namespace kr::platform

// Answers of -platform.
extern NSString* const KRPlatformCocoa;
extern NSString* const KRPlatformCarbon;
extern NSString* const KRPlatformJava;

// An application was launched, has quit, or another one has come to the front. Object: the class KRProcess.
// The value of "change" is "started", "ended", "front" or, for what is none of these, empty. Posted on the
// main thread when it next idles; while one waits to be posted, further ones are left out.
extern NSString* const KRProcessChangeNotification;

// Something that was asked for has happened in the user interface of a process. Object: the KRProcess.
// "element" is what it is about, as the system's own object for it (on macOS an AXUIElementRef, on Linux a
// string of the application's name on the accessibility bus and the object's path), or the empty text;
// "event" is the name of the notification as the system gives it. Posted like the above.
extern NSString* const KRProcessUINotification;

@interface KRProcess : NSObject {
  kr::platform::SerialNumber psn;
  NSDictionary* infoDictionary;
  uint32_t signature;  // valid once `name` is there
  NSString* name;      // its presence says that the process information has been fetched
  NSString* displayName;
  NSString* path;
  NSString* version;
  NSDate* launchDate;
  NSImage* icon;
  uint32_t cocoaStatus;                             // 0 not known yet, 1 Cocoa, 2 not Cocoa
  kr::platform::AccessibleApplication* axAppElem;   // owned; null until an observer was wanted
  kr::platform::AccessibilityObserver* axObserver;  // owned; null where there could be none
  NSMutableDictionary* customInfo;
}

// Makes a new object beside the cache; everybody else asks +processWithSerialNumber:.
- (id)initWithSerialNumber:(kr::platform::SerialNumber)serialNumber;

// Always answers an object, also for a process that has ended.
+ (KRProcess*)processWithSerialNumber:(kr::platform::SerialNumber)serialNumber;
// These answer nil where there is no such process. Of several with one signature the oldest is meant.
+ (KRProcess*)processWithPID:(pid_t)pid;
+ (KRProcess*)processWithSignature:(uint32_t)code;
+ (KRProcess*)processWithSignatureString:(NSString*)text;
+ (KRProcess*)processWithIdentifier:(NSString*)bundleIdentifier;
+ (KRProcess*)currentProcess;
+ (KRProcess*)frontProcess;

// Every application, background ones and the running program included, oldest first.
+ (NSArray*)allProcesses;

// Foreground and background processes as text, each sorted by name, one per line.
+ (NSString*)processListForDiagnosticsReport;

- (kr::platform::SerialNumber)serialNumber;
- (BOOL)isSameProcess:(kr::platform::SerialNumber)serialNumber;
// By name, without regard to case.
- (NSComparisonResult)compare:(KRProcess*)other;
- (NSString*)detailedDescription;

@end

// The cache behind the lookups, most recently used first.
@interface KRProcess (Cache)

// NSNotFound where there is none.
+ (NSUInteger)indexOfCachedProcessWithSerialNumber:(kr::platform::SerialNumber)serialNumber;
// The entry, which moves to the front; nil where there is none.
+ (KRProcess*)cachedProcessWithSerialNumber:(kr::platform::SerialNumber)serialNumber;
// Puts the receiver at the front. The caller sees to it that it is not there yet.
- (void)addToCache;
// Removes the entries whose process has ended.
+ (void)cleanupCache;
// Over the entries as they are at this moment; nil while there has never been one.
+ (NSEnumerator*)cachedProcessesEnumerator;

@end

// What the system knows of the process. A fact is fetched when it is first asked for; those that are kept
// stay the same for the object's life, also after the process has ended.
@interface KRProcess (Properties)

// Fetches name and signature; NO where the process is not there.
- (BOOL)getProcessInfo;
- (pid_t)unixPID;
- (NSString*)name;
- (NSString*)displayName;
- (uint32_t)signature;
- (NSString*)signatureString;
// The four bytes as hexadecimal digits; a byte from 0x80 up is widened with its sign to eight digits
// ("FFFFFF80").
- (NSString*)signatureHexString;
- (NSDictionary*)infoDictionary;
- (NSString*)path;
- (NSBundle*)bundle;
- (NSString*)identifier;
// A text that stays the same for a product, to make a key from, and its MD5 digest in lower-case hexadecimal
// digits.
- (NSString*)hashStringSource;
- (NSString*)hashString;
- (NSImage*)icon;
- (BOOL)isFrontProcess;
- (BOOL)isBackgroundOnly;
- (BOOL)isCocoa;
- (NSString*)platform;
- (BOOL)isStillRunning;

@end

@interface KRProcess (Versions)

// The version of a process without an information dictionary, from its resource file; nil where there is
// none.
- (NSString*)carbonVersion;
- (NSString*)version;
- (int)majorVersionNumber;
// Compares number by number; a missing one counts as 0.
- (BOOL)isAtLeastVersion:(NSString*)wanted;

@end

@interface KRProcess (Times)

- (NSDate*)launchDate;
- (double)secondsRunning;
// User CPU time in seconds. May run a shell command.
- (double)cpuTime;

@end

// Values that the program attaches to a process.
@interface KRProcess (CustomInfo)

- (id)infoForKey:(NSString*)key;
// nil removes the value.
- (void)setInfo:(id)object forKey:(NSString*)key;
// The value of the empty key.
- (id)info;
- (void)setInfo:(id)object;

@end

// Ends the process. Every result is a log line.
@interface KRProcess (Quitting)

// Asks the process to quit, again and again for `seconds`, then ends it by force within the same time. YES
// when it has gone. Blocks for up to twice the time; any thread.
- (BOOL)quitRunningApplicationWithTimeout:(float)seconds;
// The same with 4 seconds, and a "quit" Apple event where that failed.
- (void)quit;
- (void)forceQuit;

@end

// Apple events to the process. Errors are logged.
@interface KRProcess (Events)

- (void)sendAppleEventClass:(uint32_t)eventClass eventID:(uint32_t)eventID;
// Waits for the reply, for up to `seconds`.
- (void)sendAppleEventClass:(uint32_t)eventClass eventID:(uint32_t)eventID timeout:(float)seconds;
// With the text as direct parameter. No error is reported.
- (void)sendAppleEventClass:(uint32_t)eventClass eventID:(uint32_t)eventID parameter:(NSString*)text;

@end

// Which application is in front. The system may decline any of these without saying so.
@interface KRProcess (WindowOrder)

- (void)wakeUp;
- (void)setHidden:(BOOL)hidden;
- (void)setFrontProcess;
- (void)setFrontProcessFrontWindowOnly;
// Brings the running program to the front for a moment, then the receiver.
- (void)temporarilySwitchOut;

@end

// Launches and quits. The notifications and the counter are served by the main thread's run loop: where it
// does not run, nothing is told. On Linux an application is known from its first window, one without windows
// when a lookup comes across it.
@interface KRProcess (Notifications)

// Starts watching, once per program; every lookup does it. Any thread.
+ (void)installNotifications;
// What the watch does on a launch (counts) and on a quit (cleans the cache up and counts).
+ (void)applicationStarted;
+ (void)applicationEnded;
// Grows with every launch and quit: the process list may have changed when it differs from an earlier value.
+ (unsigned)applicationLaunchEndCount;

@end

// What happens in the process's user interface, as KRProcessUINotification. Names are those of the system: of
// the accessibility framework on macOS ("AXWindowCreated"), of AT-SPI on Linux ("window:create",
// "object:state-changed:focused"; later parts may be left out, for all of them). What cannot be had is
// logged. Main thread, where the last reference to an observed process is to be given up, too.
@interface KRProcess (Accessibility)

// Starts observing, if nothing was tried before.
- (void)installAXObserver;
// Starts observing, and asks for one notification.
- (void)addAXNotification:(NSString*)notification;
- (void)removeAXNotification:(NSString*)notification;
// Ends all of it. Done when the object is destroyed.
- (void)unregisterAXNotifications;

@end
