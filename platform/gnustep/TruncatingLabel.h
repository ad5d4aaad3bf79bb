// Labels whose text is too long for their line: the toolkit keeps the line break mode of such a label but
// draws the text cut off at the edge. Main thread.
#pragma once

#import <AppKit/AppKit.h>

namespace kr::theme {

// From now on the label, when its line break mode is to leave out the middle, shows the beginning and the end
// of a text that is wider than the label, with an ellipsis in between. Other labels stay as they are.
void truncateInTheMiddle(NSTextField* label);

// The longest text of a beginning, an ellipsis and an end of `text` that is at most `width` points wide with
// these attributes; the text itself when it fits. Never less than the ellipsis. The result is autoreleased.
[[nodiscard]] NSString* middleTruncated(NSString* text, NSDictionary* attributes, CGFloat width);

}  // namespace kr::theme
