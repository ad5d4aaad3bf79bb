// Products to install: packaged applications made ready as their maker would, and bundles of every other
// kind.
#pragma once

#include <string>

#include "tests/support/ScratchFolder.h"

namespace kr::testing {

// A packaged GNUstep application, copied with its links followed (most have their resources elsewhere) and
// given a signature, which the packages lack. Answers the bundle's path below `folder`.
std::string packagedApplication(const std::string& name, const std::string& signature,
                                const std::string& folder);

// A bundle of the size of a usual application in the layout of the other system: a framework with its version
// links, many small files, some large ones; at least 50 MB. Its program is a copy of a program of this
// machine that stays until it is ended.
std::string largeApplication(const std::string& path);

// The smallest product: an information file and, unless it is to be one that cannot start, a program.
std::string smallApplication(const std::string& path, bool startable = true);

}  // namespace kr::testing
