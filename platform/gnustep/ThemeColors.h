// The colours of the theme, one set for the light appearance and one for the dark, and the system colours
// that are made of them. Main thread.
#pragma once

#import <AppKit/AppKit.h>

#include <array>

namespace kr::theme {

// Each as 0xRRGGBB.
struct Palette {
  int window;
  int surface;  // of buttons, and of what is read
  int surfacePressed;
  int text;
  int textSecondary;
  int textDisabled;
  int line;
  int bar;    // of a progress indicator
  int track;  // under the bar
  int knob;   // of a scroller
  int accent;
  int accentPressed;
  int accentText;
  int focus;
  int selection;
};

inline constexpr Palette kLight{.window = 0xF5F6F8,
                                .surface = 0xFFFFFF,
                                .surfacePressed = 0xE6E9EE,
                                .text = 0x1C2128,
                                .textSecondary = 0x525B67,
                                .textDisabled = 0x666E7B,
                                .line = 0xC9CED6,
                                .bar = 0x2A66D1,
                                .track = 0xDDE1E7,
                                .knob = 0xB4BBC6,
                                .accent = 0x2A66D1,
                                .accentPressed = 0x1F4FA8,
                                .accentText = 0xFFFFFF,
                                .focus = 0x4A80E2,
                                .selection = 0xB9D4FB};

inline constexpr Palette kDark{.window = 0x202328,
                               .surface = 0x30343B,
                               .surfacePressed = 0x434851,
                               .text = 0xECEEF2,
                               .textSecondary = 0xBBC3CE,
                               .textDisabled = 0x9BA3AF,
                               .line = 0x4A505A,
                               .bar = 0x6C9CF2,
                               .track = 0x3A3F47,
                               .knob = 0x6B7380,
                               .accent = 0x3470DE,
                               .accentPressed = 0x285CBE,
                               .accentText = 0xFFFFFF,
                               .focus = 0x7FAAF5,
                               .selection = 0x2F4F82};

// The set in force: the light one until another is chosen.
[[nodiscard]] const Palette& palette();

// The set that a view is drawn with: the light one where it or a view around it is fixed to the light
// appearance, and where it scrolls a document that is; else the one in force.
[[nodiscard]] const Palette& paletteFor(NSView* view);

// The list of the system colours, made of the set in force.
[[nodiscard]] NSColorList* systemColorList();

// Puts a set in force: system colours are its colours from now on. What is on the screen stays as it is.
void setPalette(const Palette& chosen);

// Puts a set in force for a scope.
class PaletteScope {
 public:
  explicit PaletteScope(const Palette& chosen) : previous_(palette()) { change(chosen); }
  ~PaletteScope() { change(previous_); }
  PaletteScope(const PaletteScope&) = delete;
  PaletteScope& operator=(const PaletteScope&) = delete;

 private:
  static void change(const Palette& chosen) {
    if (&chosen != &palette()) setPalette(chosen);
  }

  const Palette& previous_;
};

struct SystemColor {
  NSString* name;
  int Palette::*value;
};

// Every name that controls of this application draw with.
inline const std::array<SystemColor, 26> kSystemColors{{{@"windowBackgroundColor", &Palette::window},
                                                        {@"controlColor", &Palette::window},
                                                        {@"controlBackgroundColor", &Palette::surface},
                                                        {@"controlHighlightColor", &Palette::window},
                                                        {@"controlLightHighlightColor", &Palette::surface},
                                                        {@"controlShadowColor", &Palette::line},
                                                        {@"controlDarkShadowColor", &Palette::line},
                                                        {@"controlTextColor", &Palette::text},
                                                        {@"disabledControlTextColor", &Palette::textDisabled},
                                                        {@"headerColor", &Palette::window},
                                                        {@"headerTextColor", &Palette::text},
                                                        {@"keyboardFocusIndicatorColor", &Palette::focus},
                                                        {@"knobColor", &Palette::knob},
                                                        {@"labelColor", &Palette::text},
                                                        {@"secondaryLabelColor", &Palette::textSecondary},
                                                        {@"tertiaryLabelColor", &Palette::textDisabled},
                                                        {@"quaternaryLabelColor", &Palette::textDisabled},
                                                        {@"scrollBarColor", &Palette::surface},
                                                        {@"selectedControlColor", &Palette::selection},
                                                        {@"selectedMenuItemColor", &Palette::accent},
                                                        {@"selectedMenuItemTextColor", &Palette::accentText},
                                                        {@"selectedTextBackgroundColor", &Palette::selection},
                                                        {@"selectedTextColor", &Palette::text},
                                                        {@"textBackgroundColor", &Palette::surface},
                                                        {@"textColor", &Palette::text},
                                                        {@"windowFrameColor", &Palette::line}}};

[[nodiscard]] inline NSColor* color(int value) {
  return [NSColor colorWithCalibratedRed:((value >> 16) & 0xFF) / 255.0
                                   green:((value >> 8) & 0xFF) / 255.0
                                    blue:(value & 0xFF) / 255.0
                                   alpha:1.0];
}

}  // namespace kr::theme
