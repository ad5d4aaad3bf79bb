// What applications from before bundles keep in the resource forks of their files.
#pragma once

#include <CoreServices/CoreServices.h>

#include <optional>
#include <string>

namespace kr::macos {

// The data of the resource 'vers' 1 in the resource fork of the file; none without such a fork or resource.
// Any thread.
[[nodiscard]] std::optional<std::string> versionResource(const FSRef& file);

}  // namespace kr::macos
