// What the window shows once it is set up.
#import "installer/KRInstallerInterface.h"
#import "library/appearance/KRViewExtensions.h"
#include "platform/Paths.h"
#import "platform/cocoa/Bridging.h"
#import "platform/cocoa/PrepareApplication.h"
#include "platform/posix/Files.h"
#include "tests/support/ReplacedMethod.h"
#import "tests/window/WindowTest.h"

namespace kr::testing {
namespace {

class Setup : public WindowTest {
 protected:
  std::string argument(NSString* key) { return toBytes([controller_ argument:key]); }

  // A picture twice as wide as high, which no other picture here is.
  void drawIcon(const std::string& path) {
    files::makeFolders(std::string(paths::parent(path)));
    NSImage* drawn = [[[NSImage alloc] initWithSize:NSMakeSize(40, 20)] autorelease];
    [drawn lockFocus];
    [[NSColor redColor] set];
    NSRectFill(NSMakeRect(0, 0, 40, 20));
    [drawn unlockFocus];
    ASSERT_TRUE([[drawn TIFFRepresentation] writeToFile:toNSString(std::string_view(path)) atomically:NO]);
  }
};

TEST_F(Setup, EveryOutletIsConnected) {
  load({"-sourcePath", product()});
  for (id outlet :
       {(id)[controller_ window], (id)controller_->tabView, (id)controller_->nameField,
        (id)controller_->introField, (id)controller_->pathField, (id)controller_->explanationField,
        (id)controller_->messageField, (id)controller_->iconField, (id)controller_->checkmarkField,
        (id)controller_->readMeTextView, (id)controller_->installButton, (id)controller_->cancelButton,
        (id)controller_->helpButton, (id)controller_->progressIndicator}) {
    EXPECT_NE(outlet, nil);
  }
  EXPECT_EQ([[controller_ window] delegate], (id)controller_);
  EXPECT_EQ([controller_->tabView numberOfTabViewItems], 2);
  EXPECT_EQ([controller_->tabView tabViewType], NSNoTabsNoBorder);
}

TEST_F(Setup, TheReadyPageNamesTheProductItsVersionAndWhereItGoes) {
  load({"-sourcePath", product()});
  EXPECT_EQ(page(), 1);
  EXPECT_EQ(toBytes([[controller_ window] title]), "Install Notes");
  EXPECT_EQ(text(controller_->nameField), "Notes 2.1");
  EXPECT_NE(text(controller_->introField).find("Notes"), std::string::npos);
  EXPECT_EQ(text(controller_->introField).find('%'), std::string::npos);
  EXPECT_EQ(text(controller_->explanationField).find('%'), std::string::npos);
  EXPECT_EQ(text(controller_->pathField), scratch_ / "Applications/Notes.app");
  EXPECT_EQ(title(controller_->installButton), "Install");
  EXPECT_EQ(title(controller_->cancelButton), "Cancel");
  EXPECT_TRUE([controller_->helpButton isHidden]);
  EXPECT_TRUE([controller_->messageField isHidden]);
  EXPECT_TRUE([controller_->checkmarkField isHidden]);
  EXPECT_TRUE([[controller_ window] isVisible]);
  EXPECT_TRUE(logHas("direct invocation"));
}

TEST_F(Setup, ArgumentsWinOverTheBundleAndTheCodesAreCompleted) {
  load({"-sourcePath", product(), "-productName", "The Notes", "-version", "3.0", "-quitCode", "AAAA",
        "BBBB"});
  EXPECT_EQ(text(controller_->nameField), "The Notes 3.0");
  EXPECT_EQ(toByteStrings([controller_ codes:KRInstallerKeyProductCode]), Lines{"VmNt"});
  EXPECT_EQ(toByteStrings([controller_ codes:KRInstallerKeyQuitCode]), (Lines{"AAAA", "BBBB", "VmNt"}));
  EXPECT_TRUE(log_.lines().back().starts_with("Updated arguments: {"));
}

TEST_F(Setup, GivenProductCodesStandForTheBundlesSignature) {
  load({"-sourcePath", scratch_.folder("Plain.app"), "-productCode", "AAAA", "BBBB"});
  EXPECT_EQ(toByteStrings([controller_ codes:KRInstallerKeyProductCode]), (Lines{"AAAA", "BBBB"}));
  EXPECT_EQ(toByteStrings([controller_ codes:KRInstallerKeyQuitCode]), (Lines{"AAAA", "BBBB"}));
  EXPECT_EQ(text(controller_->nameField), "Plain") << "no version, no space";
  EXPECT_EQ([controller_ argument:KRInstallerKeyVersion], nil);
}

TEST_F(Setup, TheVersionOfTheBundleIsShownButNotStored) {
  load({"-sourcePath", product()});
  EXPECT_EQ([controller_ argument:KRInstallerKeyVersion], nil);
  EXPECT_EQ(argument(KRInstallerKeySourcePath), scratch_ / "disk/Notes.app");
  EXPECT_EQ(argument(KRInstallerKeyProductName), "Notes");
  EXPECT_EQ(argument(KRInstallerKeyDestinationPath), scratch_ / "Applications/Notes.app");
}

TEST_F(Setup, AnInstallerInsideItsProductFindsItByItself) {
  program_.bundle = product() + "/Contents/Resources/VelmoraInstaller.app";
  load({});
  EXPECT_EQ(argument(KRInstallerKeySourcePath), scratch_ / "disk/Notes.app");
  EXPECT_TRUE(logHas("shortened path = " + scratch_ / "disk/Notes.app"));
}

TEST_F(Setup, WithoutAProductTheErrorIsAllThatIsShown) {
  program_.bundle = "/opt/VelmoraInstaller.app";
  load({});
  EXPECT_TRUE(logHas("missing source path"));
  EXPECT_EQ(text(controller_->introField), "missing source path");
  EXPECT_EQ(toBytes([[controller_ window] title]), "");
  EXPECT_TRUE(controller_->finished);
  EXPECT_EQ(title(controller_->installButton), "OK");
  EXPECT_TRUE([controller_->cancelButton isHidden]);
  EXPECT_TRUE([controller_->pathField isHidden]);
  EXPECT_TRUE([controller_->explanationField isHidden]);
  EXPECT_TRUE([controller_->helpButton isHidden]);
  EXPECT_TRUE([[controller_ window] isVisible]) << "the file makes it visible at launch";
}

TEST_F(Setup, ASourceWithoutANameIsAnError) {
  load({"-sourcePath", ""});
  EXPECT_TRUE(logHas("missing program name"));
  EXPECT_EQ(toBytes([[controller_ window] title]), "");
}

TEST_F(Setup, AProductWithoutASignatureIsAnErrorUnderItsFilledTitle) {
  load({"-sourcePath", scratch_.folder("Plain.app")});
  EXPECT_TRUE(logHas("missing product signature"));
  EXPECT_EQ(toBytes([[controller_ window] title]), "Install Plain");
  EXPECT_EQ(text(controller_->introField), "missing product signature");
}

TEST_F(Setup, AReadMeOpensTheFirstPageInTheLightAppearance) {
  const std::string readMe =
      scratch_.file("readme.rtf", "{\\rtf1\\ansi{\\fonttbl{\\f0\\fnil Inter;}}\\f0 Welcome to {\\b Notes}.}");
  load({"-sourcePath", product(), "-readMePath", readMe});
  EXPECT_EQ(page(), 0);
  EXPECT_EQ(toBytes([[controller_->readMeTextView textStorage] string]), "Welcome to Notes.");
  EXPECT_EQ(title(controller_->installButton), "Continue");
  EXPECT_EQ(title(controller_->cancelButton), "Cancel");
  EXPECT_EQ([[controller_->readMeTextView performSelector:@selector(appearance)] name], NSAppearanceNameAqua);
  [controller_->readMeTextView useLightAquaAppearance:NO];
  EXPECT_EQ([controller_->readMeTextView performSelector:@selector(appearance)], nil);
}

TEST_F(Setup, BeforeMojaveThereIsOneAppearanceOnly) {
  systemVersion_.appKit = 1561;
  load({"-sourcePath", product(), "-readMePath", scratch_.file("readme.txt", "words")});
  EXPECT_EQ(page(), 0);
  EXPECT_EQ([controller_->readMeTextView performSelector:@selector(appearance)], nil);
}

TEST_F(Setup, ANameThatIsNotTextIsShownWithAReplacement) {
  load({"-sourcePath", product(), "-productName", "N\xFF", "-version", "1"});
  EXPECT_EQ(text(controller_->nameField), "N\xEF\xBF\xBD 1");
  EXPECT_EQ(toBytes([[controller_ window] title]), "Install N\xEF\xBF\xBD");
}

TEST_F(Setup, TheBundlesIconIsShown) {
  platform::prepareApplication();
  const std::string source = product();
  drawIcon(source + "/Contents/Resources/Picture.tiff");
  scratch_.file("disk/Notes.app/Contents/Info.plist",
                platform::testing::propertyListText(
                    {{"CFBundleSignature", "VmNt"}, {"CFBundleIconFile", "Picture.tiff"}}));
  load({"-sourcePath", source});
  EXPECT_EQ([[controller_->iconField image] size].width, 40);
}

TEST_F(Setup, AReadMeThatIsMissingLeavesAnEmptyPageToGoBackTo) {
  load({"-sourcePath", product(), "-readMePath", scratch_ / "missing.rtf"});
  EXPECT_EQ(page(), 1);
  EXPECT_EQ(title(controller_->cancelButton), "Go Back");
  press(controller_->cancelButton);
  EXPECT_EQ(page(), 0);
  EXPECT_EQ([[controller_->readMeTextView textStorage] length], 0U);
  EXPECT_EQ(title(controller_->installButton), "Continue");
}

TEST_F(Setup, DocumentationIsOfferedAndOpened) {
  const std::string document = scratch_.file("Manual.txt");
  load({"-sourcePath", product(), "-documentationPath", document});
  EXPECT_FALSE([controller_->helpButton isHidden]);
  EXPECT_TRUE(text(controller_->explanationField)
                  .starts_with("If you wish to read the documentation first, click the \"?\" button. "));
  press(controller_->helpButton);
  EXPECT_EQ(applications_.calls(), Lines{"openInBackground " + document});
}

TEST_F(Setup, DocumentationThatIsMissingIsNotOffered) {
  load({"-sourcePath", product(), "-documentationPath", scratch_ / "missing.txt"});
  EXPECT_TRUE([controller_->helpButton isHidden]);
  EXPECT_EQ(text(controller_->explanationField).find("documentation"), std::string::npos);
  EXPECT_EQ([controller_ argument:KRInstallerKeyDocumentationPath], nil);
  [controller_ openDocumentation:nil];
  EXPECT_TRUE(logHas("documentation path missing"));
}

TEST_F(Setup, AWrapperThatIsUsableChangesTheDestination) {
  const std::string source = product();
  const std::string wrapper = scratch_.folder("disk/Notes Folder");
  load({"-sourcePath", source, "-wrapperPath", wrapper});
  EXPECT_TRUE(logHas("wrapper = " + wrapper));
  EXPECT_EQ(argument(KRInstallerKeyDestinationPath), scratch_ / "Applications/Notes Folder/Notes.app");
}

TEST_F(Setup, AWrapperThatIsNotUsableIsForgotten) {
  load({"-sourcePath", product(), "-wrapperPath", scratch_ / "disk/missing"});
  EXPECT_EQ([controller_ argument:KRInstallerKeyWrapperPath], nil);
  EXPECT_EQ(argument(KRInstallerKeyDestinationPath), scratch_ / "Applications/Notes.app");
}

TEST_F(Setup, ARunningCopyOfTheGivenCodeIsReplacedWhereItIs) {
  const std::string copy = scratch_.folder("mine") + "/My Notes.app";
  processes_.add({.pid = 100, .signature = 0x566D4E74, .name = "Notes", .path = copy});
  load({"-sourcePath", product(), "-productCode", "VmNt"});
  EXPECT_EQ(argument(KRInstallerKeyDestinationPath), copy);
  EXPECT_TRUE(logHas("autolaunch = (null)"));
}

TEST_F(Setup, WithoutAGivenCodeNoRunningCopyIsLookedFor) {
  processes_.add(
      {.pid = 100, .signature = 0x566D4E74, .name = "Notes", .path = scratch_.folder("mine") + "/Notes.app"});
  load({"-sourcePath", product()});
  EXPECT_EQ(argument(KRInstallerKeyDestinationPath), scratch_ / "Applications/Notes.app");
}

TEST_F(Setup, AnIconGivenByPathIsShown) {
  platform::prepareApplication();
  const std::string path = scratch_ / "icon.tiff";
  drawIcon(path);
  load({"-sourcePath", product(), "-iconPath", path});
  EXPECT_EQ([[controller_->iconField image] size].width, 40);
  EXPECT_EQ([[NSApp applicationIconImage] size].width, [[NSApp applicationIconImage] size].height * 2);
}

NSImage* workspacesIcon(NSWorkspace*, SEL, NSString*) {
  return [[[NSImage alloc] initWithSize:NSMakeSize(40, 20)] autorelease];
}

TEST_F(Setup, AnIconThatCannotBeReadGivesWayToTheWorkspacesIcon) {
  const auto hook = ReplacedMethod::ofInstances([NSWorkspace class], @selector(iconForFile:), workspacesIcon);
  load({"-sourcePath", product(), "-iconPath", scratch_.file("icon.png", "no image")});
  EXPECT_TRUE(NSEqualSizes([[controller_->iconField image] size], NSMakeSize(40, 20)));
  EXPECT_EQ([[NSApp applicationIconImage] size].width, [[NSApp applicationIconImage] size].height * 2);
}

}  // namespace
}  // namespace kr::testing
