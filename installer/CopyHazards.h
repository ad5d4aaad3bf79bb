// Finds out before anything is touched whether a copy would destroy what it copies from. Compares folders by
// identity, so links and several paths to one folder make no difference. Any thread.
#pragma once

#include <optional>
#include <string>

namespace kr {

// Why the product must not be copied to the destination; none when it may: the source is a folder that can be
// read, neither is inside the other, and they are not the same.
[[nodiscard]] std::optional<std::string> hazardOfProduct(const std::string& source,
                                                         const std::string& destination);

// Why the item must not be deleted to make room for another: it holds, or is, the folder that is to be kept.
[[nodiscard]] bool holds(const std::string& item, const std::string& kept);

}  // namespace kr
