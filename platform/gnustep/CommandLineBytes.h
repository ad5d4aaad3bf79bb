// Foundation reads the command line while it is loaded, and ends the program when a word is not UTF-8: a path
// need not be. Bytes that are not ASCII are therefore hidden from it, from before the first library is
// initialised until restored here. Nothing in this project reads Foundation's copy of the command line.
#pragma once

namespace kr::platform {

// Puts the hidden bytes back in place. First thing in main(), before other threads run.
void restoreCommandLineBytes() noexcept;

}  // namespace kr::platform
