// What labels and buttons show of a text that goes from right to left, which the toolkit cannot draw, and how
// much room a text takes. Main thread.
#pragma once

#import <AppKit/AppKit.h>

namespace kr::theme {

// A text of one line as the toolkit has to be given it: itself, unless it holds characters that are written
// from right to left. Autoreleased.
[[nodiscard]] NSString* drawable(NSString* text);

// The lines of a text, as drawable() answers them, when they may be at most `width` points wide; broken at
// spaces and at line ends. A word that is wider than that has a line of its own.
[[nodiscard]] NSArray* drawableLines(NSString* text, NSDictionary* attributes, CGFloat width);

// How wide and how high a text is in lines of at most that width.
[[nodiscard]] NSSize textSize(NSString* text, NSDictionary* attributes, CGFloat width);

// From now on the label shows texts from right to left as they are written, and ends its lines at the right
// edge where the whole interface does.
void drawInBothDirections(NSTextField* label);

// The text of a label begins that far from both of its edges.
inline constexpr CGFloat kLabelInset = 2;

}  // namespace kr::theme
