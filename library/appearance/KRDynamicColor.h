// A colour that is one of two, whichever fits the appearance, light or dark, at the moment it is used. A view
// sets it once and draws right after every change between light and dark. Before macOS 10.14 it is always the
// light one. Main thread.
//
//   NSColor* ink = [KRDynamicColor lightColor:[NSColor blackColor] darkColor:[NSColor whiteColor]];
//
// Whatever a colour can be asked is answered by the colour in force; a colour that is derived from it, such
// as -colorWithAlphaComponent:, is a plain one of the appearance in force then.
#pragma once

#import <AppKit/AppKit.h>

FOUNDATION_EXPORT NSString* const KRAccentColorNameBlue;
FOUNDATION_EXPORT NSString* const KRAccentColorNamePurple;
FOUNDATION_EXPORT NSString* const KRAccentColorNamePink;
FOUNDATION_EXPORT NSString* const KRAccentColorNameRed;
FOUNDATION_EXPORT NSString* const KRAccentColorNameOrange;
FOUNDATION_EXPORT NSString* const KRAccentColorNameYellow;
FOUNDATION_EXPORT NSString* const KRAccentColorNameGreen;
FOUNDATION_EXPORT NSString* const KRAccentColorNameGraphite;

@interface KRDynamicColor : NSColor <NSSecureCoding> {
  NSColor* aquaColor;        // owned
  NSColor* darkAquaColor;    // owned; nil: the light colour is used always
  BOOL useGlobalAppearance;  // YES: the desktop decides; NO: the appearance that is drawn in
}

// The second follows the desktop's appearance when `global` is YES, the first never does. A colour without a
// dark one is the light one always.
+ (KRDynamicColor*)lightColor:(NSColor*)light darkColor:(NSColor*)dark;
+ (KRDynamicColor*)lightColor:(NSColor*)light darkColor:(NSColor*)dark global:(BOOL)global;

// The designated initialiser.
- (id)initWithAquaColor:(NSColor*)light darkAquaColor:(NSColor*)dark global:(BOOL)global;

// A coder takes both colours, not what decides between them: a decoded colour follows what is drawn in. The
// coder must be a keyed one.
- (id)initWithCoder:(NSCoder*)coder;
- (void)encodeWithCoder:(NSCoder*)coder;

// Sets what decides and returns the receiver.
- (KRDynamicColor*)useGlobalAppearance:(BOOL)global;

// The one of the two colours that is in force now.
- (NSColor*)effectiveColor;

@end

// Colours that come ready made; each is one object for the life of the program.
@interface KRDynamicColor (Ready)

// For texts that warn.
+ (NSColor*)redWarningTextColor;

// The accent colour that the user has set for the desktop, one of the names above.
+ (NSString*)accentColorName;
// For highlighted items of menus, in the user's accent colour. The first follows the desktop's appearance,
// the second the one that is drawn in; before 10.14 both are the platform's.
+ (NSColor*)menuHighlightColor;
+ (NSColor*)menuItemHighlightColor;

@end
