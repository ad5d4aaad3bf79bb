// The colours of the theme as 0xRRGGBB, and the system colours that are made of them.
#pragma once

#import <AppKit/AppKit.h>

#include <array>

namespace kr::theme {

inline constexpr int kWindow = 0xF6F7F9;
inline constexpr int kSurface = 0xFFFFFF;
inline constexpr int kSurfacePressed = 0xE6E9EE;
inline constexpr int kText = 0x1C2128;
inline constexpr int kTextSecondary = 0x59626F;
inline constexpr int kTextDisabled = 0x6B7380;
inline constexpr int kLine = 0xC3C9D2;
inline constexpr int kTrack = 0xDFE3E9;
inline constexpr int kKnob = 0xB4BBC6;
inline constexpr int kAccent = 0x2A66D1;
inline constexpr int kAccentPressed = 0x1F4FA8;
inline constexpr int kAccentText = 0xFFFFFF;
inline constexpr int kSelection = 0xB9D4FB;

struct SystemColor {
  NSString* name;
  int value;
};

// Every name that controls of this application draw with.
inline const std::array<SystemColor, 26> kSystemColors{{{@"windowBackgroundColor", kWindow},
                                                        {@"controlColor", kWindow},
                                                        {@"controlBackgroundColor", kSurface},
                                                        {@"controlHighlightColor", kWindow},
                                                        {@"controlLightHighlightColor", kSurface},
                                                        {@"controlShadowColor", kLine},
                                                        {@"controlDarkShadowColor", kLine},
                                                        {@"controlTextColor", kText},
                                                        {@"disabledControlTextColor", kTextDisabled},
                                                        {@"headerColor", kWindow},
                                                        {@"headerTextColor", kText},
                                                        {@"keyboardFocusIndicatorColor", kAccent},
                                                        {@"knobColor", kKnob},
                                                        {@"labelColor", kText},
                                                        {@"secondaryLabelColor", kTextSecondary},
                                                        {@"tertiaryLabelColor", kTextDisabled},
                                                        {@"quaternaryLabelColor", kLine},
                                                        {@"scrollBarColor", kSurface},
                                                        {@"selectedControlColor", kSelection},
                                                        {@"selectedMenuItemColor", kAccent},
                                                        {@"selectedMenuItemTextColor", kAccentText},
                                                        {@"selectedTextBackgroundColor", kSelection},
                                                        {@"selectedTextColor", kText},
                                                        {@"textBackgroundColor", kSurface},
                                                        {@"textColor", kText},
                                                        {@"windowFrameColor", kLine}}};

[[nodiscard]] inline NSColor* color(int value) {
  return [NSColor colorWithCalibratedRed:((value >> 16) & 0xFF) / 255.0
                                   green:((value >> 8) & 0xFF) / 255.0
                                    blue:(value & 0xFF) / 255.0
                                   alpha:1.0];
}

}  // namespace kr::theme
