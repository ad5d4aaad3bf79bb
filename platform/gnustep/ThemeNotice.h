// The notification that a desktop sends when it changes between light and dark. Main thread.
#pragma once

namespace kr::theme {

// Sends it, so that the views that have registered for it hear of a change that came another way. Does
// nothing, and takes no time, where this program is not connected to the distributed notification centre:
// none of its views has registered then, and other programs look after theirs.
void announceChange();

// Has the theme follow the desktop whenever somebody sends it, from the first turn of the run loop on.
void followAnnouncements();

}  // namespace kr::theme
