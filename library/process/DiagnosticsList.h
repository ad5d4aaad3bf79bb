// The process list of a diagnostics report. Texts are UTF-8.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace kr {

// Whether one text stands before another.
using TextOrder = std::function<bool(const std::string&, const std::string&)>;

// Both lists under their headings, each sorted in the order given, one text per line; "none" for an empty
// list.
[[nodiscard]] std::string processListText(std::vector<std::string> foreground,
                                          std::vector<std::string> background, const TextOrder& before);

}  // namespace kr
