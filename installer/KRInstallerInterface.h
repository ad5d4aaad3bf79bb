// The interface of the installer to the products that start it: the keys of its launch arguments. On the
// command line each key stands with a dash before it and is followed by its value, or by its values for the
// two code lists:
//
//   VelmoraInstaller -productName "Notes" -version 2.1 -sourcePath /tmp/Notes.app -quitCode VmNt VmNX
#pragma once

#import <Foundation/Foundation.h>

extern NSString* const KRInstallerKeyProductName;
extern NSString* const KRInstallerKeyVersion;
extern NSString* const KRInstallerKeyMinSystemVersion;
extern NSString* const KRInstallerKeySourcePath;
extern NSString* const KRInstallerKeyDestinationPath;
extern NSString* const KRInstallerKeyDocumentationPath;
extern NSString* const KRInstallerKeyReadMePath;
extern NSString* const KRInstallerKeyProductCode;
extern NSString* const KRInstallerKeyQuitCode;
extern NSString* const KRInstallerKeyIconPath;
extern NSString* const KRInstallerKeyWrapperPath;
extern NSString* const KRInstallerCompletionSound;
extern NSString* const KRInstallerCompletionQuit;
