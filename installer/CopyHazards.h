// What must hold before an installation touches anything, so that no step of it can destroy what it is about
// to copy. Places are compared as the disk knows them, by volume and file number, so that no link, other
// spelling or second mount hides that two paths lead to one place. Where the disk does not answer, there is
// danger. Paths are absolute, file-system bytes. Any thread.
#pragma once

#include <optional>
#include <string>

#include "platform/Failure.h"

namespace kr {

// Why the source cannot be installed at the destination: it is no folder that can be read, it is the
// destination, or one of the two lies inside the other. None when it can.
[[nodiscard]] std::optional<platform::Failure> hazardOfProduct(const std::string& source,
                                                               const std::string& destination);

// Why the wrapper's entries cannot be placed beside the destination: the wrapper cannot be listed, its
// entries would be placed in the wrapper itself, or one of the items that give way to them is or holds the
// wrapper, the source, the running program, or what the entry links to. The failure's path is the place that
// cannot be taken. None when they can.
[[nodiscard]] std::optional<platform::Failure> hazardOfWrapper(const std::string& wrapper,
                                                               const std::string& source,
                                                               const std::string& destination);

}  // namespace kr
