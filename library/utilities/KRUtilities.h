// Utilities of the desktop for Cocoa programs. The class has no instances. Any thread, unless a category says
// otherwise; nothing raises but what says so.
//
// On first use the class sets itself up: it watches changes of the system's theme, and from one second later
// which program is in front, and logs "**Utilities initialized".
#pragma once

#import <Foundation/Foundation.h>

@class KRProcess;
@class NSImage;

@interface KRUtilities : NSObject

// The names of the main bundle's program and version in its information dictionary; "" without one.
+ (NSString*)applicationName;
+ (NSString*)versionString;

// A day written as year, month and day ("2021-03-05"), its midnight in universal time, in the short form of
// the user's language and time zone; nil when it is no date.
+ (NSString*)localizedDateString:(NSString*)day;

// How many icon files the main bundle has.
+ (NSUInteger)appType;

@end

// Other programs. Any thread, unless a method says otherwise.
@interface KRUtilities (OtherPrograms)

// Starts the file at the path ("~" stands for the home folder, "~NAME" for another user's) in the home
// folder, with nothing to read, and answers what it has written to its standard output and error once it has
// ended. After `timeout` seconds it is asked to end, and the answer is what it has written so far. nil when
// that is not UTF-8. The file has to say by itself what interprets it; without parameters (nil) it is started
// without. One that cannot be started, or has a parameter that is no string, has as its text that it has
// failed. Blocks for up to the time.
+ (NSString*)runShellScript:(NSString*)path
             withParameters:(NSArray*)parameters
                    timeout:(NSTimeInterval)timeout;

// What the command line, or the description of any other object, has written to its standard output. Blocks
// until everybody has closed that; nil when it is not UTF-8. Raises where there is no shell.
+ (NSString*)shellCommandResult:(id)commandLine;

// Opens a document with its default application, and an application by starting it. Returns at once, without
// a result. Raises for nil.
+ (void)openFile:(NSString*)path;

// The applications that keep the keyboard to themselves, as KRProcess objects; nil when there is none, and
// where the system does not tell (on Linux). Main thread.
+ (NSArray*)secureInputProcesses;

@end

// The place of a letter in the order of the stages of development: p 0, d 1, a 2, b 3, f 4, a space 5; 0 for
// every other character.
FOUNDATION_EXPORT NSUInteger developmentStage(unichar letter);

// Versions of products.
@interface KRUtilities (Versions)

// The digits and dots at the beginning.
+ (NSString*)plainVersionOf:(NSString*)version;
+ (NSString*)plainVersionString;

// Orders versions as VersionOrder.h says: 1.2b4 comes before 1.2, and 10.9 before 10.15.
+ (NSComparisonResult)compareVersion:(NSString*)version withVersion:(NSString*)other;

@end

// In this order in memory; all 0 when the system does not say what it is.
typedef struct {
  uint16_t major;
  uint16_t minor;
  uint16_t bugfix;
} KRThreePartVersion;

// The system that the program runs on.
@interface KRUtilities (SystemVersion)

// 0x1068 for 10.6.8; 0 when the system does not say.
+ (uint32_t)hexSystemVersion;
+ (KRThreePartVersion)threePartVersion;
// 101507 for 10.15.7.
+ (uint32_t)decimalSystemVersion;
// "10.15.7", and "11.0" for 11.0.0.
+ (NSString*)systemVersionString;

+ (BOOL)pantherOrOlder;
+ (BOOL)leopardOrNewer;
+ (BOOL)snowleopardOrNewer;
+ (BOOL)lionOrNewer;
+ (BOOL)mountainLionOrNewer;
+ (BOOL)mavericksOrNewer;
+ (BOOL)yosemiteOrNewer;
+ (BOOL)elCapitanOrNewer;
+ (BOOL)sierraOrNewer;
+ (BOOL)highSierraOrNewer;
+ (BOOL)mojaveOrNewer;
+ (BOOL)catalinaOrNewer;

@end

// Where the program runs, and how it was started. Any thread.
@interface KRUtilities (Environment)

// Whether the program lies on a volume with the file ".launchlock" or "launchlock" at its root.
+ (BOOL)runningFromDistributionDisk;
// Whether the program should act as an installer of itself: there, or in a place that does not last.
+ (BOOL)installationMode;

// What the alias at the path leads to in the end; the path itself where it is no alias. On Linux that is a
// symbolic link.
+ (NSString*)resolvedAlias:(NSString*)path;

// The type of the file system that holds the path, as the system names it ("apfs", "ext4"); "" where that
// cannot be had. Logs two lines.
+ (NSString*)fileSystemTypeFor:(NSString*)path;

// Whether the program was started by one with this four-character creator code, and whether it was started
// with the user's session. On Linux, "lgnw" stands for what starts the entries of the autostart folders, and
// other codes are the signatures of bundles.
+ (BOOL)wasLaunchedByProcess:(NSString*)creatorCode;
+ (BOOL)wasLaunchedAsLoginItem;

// An address of secure HTTP ("https:...") with "http" where the system is older than 10.13, or than the user
// default "httpsMinSys" says (101200 for 10.12.0); every other address as it is.
+ (NSString*)safeHTTPS:(NSString*)address;

// Whether a debugger is attached to the program.
+ (BOOL)debugging;

@end

// Main thread.
@interface KRUtilities (Micro)

// Gives the keyboard back to the program in front, by means of the application "Micro" among the resources of
// the main bundle: that comes to the front, and the program that was there before is woken up and comes back,
// unless it is to stay behind. Blocks for up to half a second for either way. Nothing in full-screen mode.
// What fails is logged.
+ (void)launchMicro:(BOOL)staysBehind;

@end

// The user's desktop. Main thread.
@interface KRUtilities (Desktop)

// Keeps +clipboardPublisherProcess up to date with every change of the program in front that is told
// (KRProcess.h says from when on).
+ (void)installProcessWatcher;
+ (void)processSwitched:(NSNotification*)notification;
// The program that changed the clipboard last; nil while none is known.
+ (KRProcess*)clipboardPublisherProcess;

@end

// How the user's desktop looks. Any thread.
@interface KRUtilities (Appearance)

// The system's theme has changed. A hook; it does nothing.
+ (void)darkModeChanged:(NSNotification*)notification;

// Whether menus are dark, which they can be since 10.10, and whether the rest of the desktop is, too, which
// it can be since 10.14: the user has chosen the dark style.
+ (BOOL)darkMenuTheme;
+ (BOOL)darkAppearance;

// The image of the application that fits the look of the system's menus and the user's tint of controls:
// "tintYosDark", "tintYos" or, before 10.10, "tintMav", and then "Blue" or "Graphite". Main thread.
+ (NSImage*)systemTintImage;

@end

// What the user is doing and wants to be spared. Asked anew each time. Any thread.
@interface KRUtilities (Attention)

// Seconds since the user has last touched keyboard or mouse; -1 when the system does not say.
+ (float)idleTime;

// Whether the user wants no notifications, always or at this time of the day; never before 10.14.
+ (BOOL)doNotDisturbMode;

// NO.
+ (BOOL)displayIsZoomed;

@end

// The state of the desktop. Main thread.
@interface KRUtilities (DesktopState)

// Whether the menu bar is hidden because an application fills the screen. The first question has the answer
// NO; from then on it follows what the run loop is told.
+ (BOOL)fullScreenMode;

@end

// What +fullScreenMode installs, once per program, and its handler of an event: a class and a kind. The
// handler answers that others are to get the event as well.
FOUNDATION_EXPORT void InstallMenuBarEventMonitor(void);
FOUNDATION_EXPORT int32_t MonitorMenuBarEventHandler(uint32_t eventClass, uint32_t kind);
