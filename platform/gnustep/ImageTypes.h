// The image formats that the toolkit reads. Main thread.
#pragma once

namespace kr::theme {

// Leaves the formats that the toolkit reads by itself (TIFF, PNG, JPEG, GIF, ICNS ...) and takes out those it
// hands to ImageMagick. With these there are more than two hundred, each of them loaded as a module, and
// every picture that is asked for by name is looked for under each of them in every library folder: most of
// the time of a start. Before the application object is made.
void keepOwnImageTypes();

}  // namespace kr::theme
