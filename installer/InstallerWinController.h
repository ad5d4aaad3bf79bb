// The installer's only window and all that happens in it: it fills the pages from the launch arguments,
// starts the install thread when the user confirms, and shows how that ended. The main user-interface file
// creates the one controller and connects its outlets; awakeFromNib does the rest. Main thread, but for the
// operations that are marked "install thread".
#pragma once

#import <AppKit/AppKit.h>

namespace kr {

// Of an event, while the key is held that asks for administrator rights.
inline constexpr NSUInteger kOptionModifier = 0x80000;

}  // namespace kr

@interface InstallerWinController : NSWindowController {
 @public
  IBOutlet NSTabView* tabView;  // page 0: read-me, page 1: install
  IBOutlet NSTextField* nameField;
  IBOutlet NSTextField* introField;  // a format with one "%@" as loaded; the final message at the end
  IBOutlet NSTextField* pathField;
  IBOutlet NSTextField* explanationField;  // a format with one "%@" as loaded
  IBOutlet NSTextField* messageField;      // why an installation failed
  IBOutlet NSImageView* iconField;
  IBOutlet NSImageView* checkmarkField;
  IBOutlet NSTextView* readMeTextView;
  IBOutlet NSButton* installButton;
  IBOutlet NSButton* cancelButton;
  IBOutlet NSButton* helpButton;
  IBOutlet NSProgressIndicator* progressIndicator;

  // The launch arguments (KRInstallerInterface.h), owned: strings, and arrays of strings for the code lists.
  // Built once during setup, read by the install thread, not changed after setup.
  NSMutableDictionary* arguments;

  // A final message is shown: the install button quits from now on.
  BOOL finished;

  // The system is as new as the product requires, or the product requires nothing. Set during setup.
  BOOL systemRequirementMet;

 @private
  NSDictionary* productInfo;  // information dictionary of the product to install, owned
  NSString*
      displayVersion;  // version shown to the user: the argument, else that of the product; owned, may be nil
  BOOL optionIsHeld;   // what the main thread has last answered the install thread
}

- (IBAction)install:(id)sender;
- (IBAction)cancel:(id)sender;
- (IBAction)openDocumentation:(id)sender;

// Selects a page and gives the buttons the titles that go with it.
- (void)selectTab:(NSInteger)index;

// Any object starts the progress animation, nil stops it.
- (void)animateProgress:(id)start;

// The application's delegate. A bare word on the command line is none of its files.
- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)application;
- (BOOL)application:(NSApplication*)application openFile:(NSString*)path;

// Logs a text and shows it as the final message: the setup ends here.
- (void)showSetupError:(NSString*)message;

@end

// The launch arguments, from the command line and from the product's bundle.
@interface InstallerWinController (Arguments)

// Fills `arguments` from the command line; does nothing once they are there.
- (void)extractArguments;

// The value of a key as a string, or as an array of strings; nil when there is none of that kind.
- (NSString*)argument:(NSString*)key;
- (NSArray*)codes:(NSString*)key;

// What the information dictionary of the product says under a key; nil when it says nothing that is text.
- (NSString*)productText:(NSString*)key;

// The value of a key as the bytes of a path.
- (BOOL)hasFileAtArgument:(NSString*)key;

// Steps of the setup. The first three answer NO when the setup has ended with an error message.
- (BOOL)completeSourcePath;
- (BOOL)completeProductName;
- (BOOL)completeCodes;
- (void)completeDocumentation;

@end

// Whether the system is new enough for the product.
@interface InstallerWinController (SystemRequirement)

// The lowest version that the product runs on, from the arguments or from its bundle; nil when any will do.
- (NSString*)requiredSystemVersion;

// Steps of the setup: compares the versions, and shows the alert that refuses the system, as a sheet. Nothing
// leads past the alert: both of its buttons quit.
- (void)testSystemRequirement;
- (void)showSystemRequirementAlert;

// The alert's end. Code 1001 opens the software archive first.
- (void)systemVersionAlertDidEnd:(id)alert returnCode:(NSInteger)code contextInfo:(void*)context;

@end

// Where the product goes.
@interface InstallerWinController (Destination)

- (BOOL)isInUnsupportedFolder:(NSString*)path;

// Path of the first login item whose file name begins with the prefix; nil when there is none.
- (NSString*)autoLaunchPathFor:(NSString*)namePrefix;

// Path of a running copy of the product; nil when there is none.
- (NSString*)pathToProcessToReplace;

- (NSString*)findPreferredDestinationFor:(NSString*)productName;
- (NSString*)applicationsDirectory;

// A path for people: every component under its display name; localizedPath: abbreviates the home folder as
// well.
- (NSString*)recursiveLocalizedPath:(NSString*)path;
- (NSString*)localizedPath:(NSString*)path;

// Settles "destinationPath" and "wrapperPath" and shows the destination.
- (void)resolveDestination;

@end

// Whether the user may write somewhere. Any thread.
@interface InstallerWinController (Permissions)

- (BOOL)canWriteToFile:(NSString*)path;
- (BOOL)canWriteToDirectory:(NSString*)path;
- (BOOL)canWriteToFileOrDirectory:(NSString*)path;

// Whether the destination can be written without further rights; logs why not.
- (BOOL)canWriteToPath:(NSString*)path;

@end

// Quitting running copies of the product. Install thread.
@interface InstallerWinController (Quitting)

// Whether one of the four-character strings stands for the code.
- (BOOL)signature:(uint32_t)code isInArray:(NSArray*)signatures;

// Asks every running copy to quit; does not wait.
- (void)quitProcesses;

// Name of the first copy that still runs; nil when there is none.
- (NSString*)processToQuitStillRunning;

@end

// The installation itself. Install thread.
@interface InstallerWinController (Installing)

// Body of the thread: quit, copy, launch; hands the result to installationFinished: on the main thread.
- (void)installThread;

// nil when the product is in place, the empty text when the user has dismissed the password dialog, else the
// key of a failure text.
- (NSString*)installMyselfInDestination;

// Has animateProgress: called on the main thread; does not wait for it.
- (void)animateOnMainThread:(NSString*)start;

// "%@ %@" of product name and version, set when a copy starts and kept; nil before the first. Any thread.
+ (NSString*)installationInProgress;

@end

// The copy with administrator rights. Install thread.
@interface InstallerWinController (PrivilegedCopy)

// Asks the user for administrator rights and has the tool "train" of the application's bundle copy with them.
// Whether the product is in place. `wrapper` may be nil. `canceled` may be null; it receives whether the user
// has dismissed the dialog.
- (BOOL)authorizedInstall:(NSString*)source
                       to:(NSString*)destination
                     wrap:(NSString*)wrapper
                 canceled:(BOOL*)canceled;

@end

// Registering and starting the installed product. Install thread.
@interface InstallerWinController (Launching)

- (void)launchInstalledProduct:(NSString*)destination;

@end

// The product's own confirmation that it has started.
@interface InstallerWinController (Handshake)

// Has the confirmation delivered to the second operation from now on; first thing in the setup.
- (void)installAppleEvents;

// Reports success when the event names the installation in progress; any other event is logged and no more.
// Nothing is put into the reply.
- (void)installationDone:(NSAppleEventDescriptor*)event withReplyEvent:(NSAppleEventDescriptor*)reply;

@end

// How an installation ends.
@interface InstallerWinController (Completion)

// nil: the product was installed. Any other text is shown as the reason why it was not, and the user may try
// again.
- (void)installationFinished:(NSString*)failure;

// Turns the window into the final page with the text, a format with one "%@" for the product name.
- (void)showFinalMessage:(NSString*)format;

@end

// The sound at the end.
@interface InstallerWinController (Sound)

// Plays it when "completionSound" is "YES", as loud and where alerts are played. Returns at once.
- (void)playDoneSound;

@end
