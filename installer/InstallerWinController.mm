#import "installer/InstallerWinController.h"

#import "installer/KRInstallerInterface.h"
#include "installer/LaunchArguments.h"
#import "installer/Localized.h"
#include "installer/LogRedirection.h"
#import "library/appearance/KRViewExtensions.h"
#import "library/process/KRProcess.h"
#import "library/utilities/KRUtilities.h"
#include "platform/Log.h"
#include "platform/Program.h"
#include "platform/Services.h"
#include "platform/StandardFolders.h"
#import "platform/cocoa/Bridging.h"
#import "platform/cocoa/PrepareApplication.h"
#import "platform/cocoa/PropertyLists.h"

using kr::toBytes;
using kr::toNSString;

namespace {

constexpr NSInteger kReadMePage = 0;
constexpr NSInteger kInstallPage = 1;

NSImage* imageAt(NSString* path) {
  return [path length] == 0 ? nil
                            : [[[NSImage alloc] initWithContentsOfFile:kr::toDisplayText(path)] autorelease];
}

}  // namespace

@interface InstallerWinController ()
- (void)redirectLog;
- (void)localizeWindow;
- (void)prepareWindow;
- (void)showIcon;
- (void)showTexts;
- (void)showReadMe;
- (void)bringToFront;
@end

@implementation InstallerWinController

- (void)dealloc {
  [arguments release];
  [productInfo release];
  [displayVersion release];
  [super dealloc];
}

#pragma mark Setup

- (void)awakeFromNib {
  [self installAppleEvents];
  [self redirectLog];
  [self prepareWindow];
  [self extractArguments];
  if (![self completeSourcePath] || ![self completeProductName]) return;

  NSString* sourcePath = [self argument:KRInstallerKeySourcePath];
  [[self window] setTitle:kr::filled([[self window] title], [self argument:KRInstallerKeyProductName])];
  productInfo = [kr::bundleInfoDictionary(toBytes(sourcePath)) retain];
  [self showIcon];
  NSString* version = [self argument:KRInstallerKeyVersion];
  displayVersion = [(version ? version : [self productText:@"CFBundleShortVersionString"]) copy];
  [self testSystemRequirement];

  [self resolveDestination];
  [self completeDocumentation];
  if (![self completeCodes]) return;

  [self showTexts];
  [self showReadMe];
  [self bringToFront];
  if (!systemRequirementMet) [self showSystemRequirementAlert];
}

// A product that starts the installer wants its log in a file; a user who opens it sees the log where the
// system shows that of every application.
- (void)redirectLog {
  if (kr::isStartedByProduct(kr::platform::services().program->arguments())) {
    kr::redirectStandardStreams(kr::platform::services().folders->home());
  } else {
    kr::log("direct invocation");
  }
}

// The user-interface file is in English.
- (void)localizeWindow {
  [[self window] setTitle:kr::localized([[self window] title])];
  for (NSTextField* field in @[ introField, explanationField ]) {
    [field setStringValue:kr::localized([field stringValue])];
  }
  [cancelButton setTitle:kr::localized([cancelButton title])];
  kr::localizeMenu([NSApp mainMenu]);
}

- (void)prepareWindow {
  [self localizeWindow];
  kr::platform::finishWindow([self window]);
  [nameField setStringValue:@""];
  [tabView setTabViewType:NSNoTabsNoBorder];
  [self selectTab:kInstallPage];
}

- (void)showIcon {
  NSString* sourcePath = [self argument:KRInstallerKeySourcePath];
  NSImage* icon = imageAt([self argument:KRInstallerKeyIconPath]);
  NSString* name = [self productText:@"CFBundleIconFile"];
  if (icon == nil && [name length] > 0) {
    const std::string source = toBytes(sourcePath);
    std::string path = kr::bundleResourcePath(source, toBytes(name), "icns");
    if (path.empty()) path = kr::bundleResourcePath(source, toBytes(name), "");
    icon = imageAt(toNSString(path));
  }
  if (icon == nil) icon = [[NSWorkspace sharedWorkspace] iconForFile:kr::toDisplayText(sourcePath)];
  if (icon == nil) return;
  [iconField setImage:icon];
  [NSApp setApplicationIconImage:icon];
}

- (void)showTexts {
  NSString* name = [self argument:KRInstallerKeyProductName];
  NSString* nameAndVersion =
      displayVersion ? [NSString stringWithFormat:@"%@ %@", name, displayVersion] : name;
  [nameField setStringValue:kr::toDisplayText(nameAndVersion)];
  [introField setStringValue:kr::filled([introField stringValue], name)];

  NSString* explanation = kr::filled([explanationField stringValue], name);
  const BOOL hasDocumentation = [self hasFileAtArgument:KRInstallerKeyDocumentationPath];
  if (hasDocumentation) {
    NSString* hint = kr::localized(@"If you wish to read the documentation first, click the \"?\" button.");
    explanation = [NSString stringWithFormat:@"%@ %@", hint, explanation];
  }
  [explanationField setStringValue:explanation];
  [helpButton setHidden:!hasDocumentation];
  [messageField setHidden:YES];
}

- (void)showReadMe {
  if ([self hasFileAtArgument:KRInstallerKeyReadMePath]) {
    [readMeTextView useLightAquaAppearance:YES];
    // The way that takes a location instead cannot read a document that is a folder on GNUstep.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"
    NSAttributedString* text =
        [[NSAttributedString alloc] initWithPath:kr::toDisplayText([self argument:KRInstallerKeyReadMePath])
                              documentAttributes:nullptr];
#pragma clang diagnostic pop
    if (text != nil) [[readMeTextView textStorage] setAttributedString:text];
    [text release];
    [self selectTab:kReadMePage];
  } else {
    [self selectTab:kInstallPage];
  }
}

- (void)bringToFront {
  [checkmarkField setHidden:YES];
  NSWindow* window = [self window];
  [window center];
  [window makeKeyAndOrderFront:nil];
  [window orderFrontRegardless];
  [window makeMainWindow];
  [[KRProcess currentProcess] setFrontProcess];
}

- (void)showSetupError:(NSString*)message {
  kr::log("%@", toBytes(message));
  [self showFinalMessage:message];
  NSWindow* window = [self window];
  if ([[window title] rangeOfString:@"%"].location != NSNotFound) [window setTitle:@""];
}

#pragma mark Pages and buttons

- (void)selectTab:(NSInteger)index {
  [tabView selectTabViewItemAtIndex:index];
  [installButton setTitle:kr::localized(index == kReadMePage ? @"Continue" : @"Install")];
  if ([self argument:KRInstallerKeyReadMePath] != nil) {
    [cancelButton setTitle:kr::localized(index == kReadMePage ? @"Cancel" : @"Go Back")];
  }
}

- (NSInteger)selectedPage {
  NSTabViewItem* page = [tabView selectedTabViewItem];
  return page != nil ? [tabView indexOfTabViewItem:page] : NSNotFound;
}

- (IBAction)install:(id)sender {
  if (finished) {
    [NSApp terminate:self];
  } else if ([self selectedPage] == kReadMePage) {
    [self selectTab:kInstallPage];
  } else {
    [installButton setEnabled:NO];
    [cancelButton setEnabled:NO];
    [NSThread detachNewThreadSelector:@selector(installThread) toTarget:self withObject:nil];
  }
}

- (IBAction)cancel:(id)sender {
  if ([self argument:KRInstallerKeyReadMePath] != nil && [self selectedPage] == kInstallPage) {
    [self selectTab:kReadMePage];
  } else {
    [NSApp terminate:self];
  }
}

- (IBAction)openDocumentation:(id)sender {
  NSString* path = [self argument:KRInstallerKeyDocumentationPath];
  if (path == nil) {
    kr::log("documentation path missing");
    NSBeep();
  } else {
    [KRUtilities openFile:path];
  }
  // A part of the action since it is there: the minimise button is asked. Whatever it answers, the window
  // stays as it is.
  (void)[[[self window] standardWindowButton:NSWindowMiniaturizeButton] isEnabled];
}

// The key of a button is Return alone; with Option it is to press the same button.
- (void)keyDown:(NSEvent*)event {
  const bool isReturn = [[event charactersIgnoringModifiers] isEqualToString:@"\r"];
  if (isReturn && ([event modifierFlags] & kr::kOptionModifier) != 0 && [installButton isEnabled]) {
    [installButton performClick:self];
  } else {
    [super keyDown:event];
  }
}

- (void)animateProgress:(id)start {
  if (start != nil) {
    [progressIndicator startAnimation:self];
  } else {
    [progressIndicator stopAnimation:self];
  }
}

#pragma mark Application

- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)application {
  return YES;
}

// Launch arguments hold bare words ("-quitCode AAAA BBBB"), which the toolkit takes for files to open. They
// are none, and unanswered they would end in an alert.
- (BOOL)application:(NSApplication*)application openFile:(NSString*)path {
  return YES;
}

@end
