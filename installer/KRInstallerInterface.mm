#import "installer/KRInstallerInterface.h"

NSString* const KRInstallerKeyProductName = @"productName";
NSString* const KRInstallerKeyVersion = @"version";
NSString* const KRInstallerKeyMinSystemVersion = @"minSystemVersion";
NSString* const KRInstallerKeySourcePath = @"sourcePath";
NSString* const KRInstallerKeyDestinationPath = @"destinationPath";
NSString* const KRInstallerKeyDocumentationPath = @"documentationPath";
NSString* const KRInstallerKeyReadMePath = @"readMePath";
NSString* const KRInstallerKeyProductCode = @"productCode";
NSString* const KRInstallerKeyQuitCode = @"quitCode";
NSString* const KRInstallerKeyIconPath = @"iconPath";
NSString* const KRInstallerKeyWrapperPath = @"wrapperPath";
NSString* const KRInstallerCompletionSound = @"completionSound";
NSString* const KRInstallerCompletionQuit = @"completionQuit";
