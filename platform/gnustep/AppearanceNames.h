// How the appearances of Cocoa stand to each other. Any thread.
#pragma once

#include <optional>
#include <string_view>

namespace kr::platform {

// The name of the appearance that this one is a variant of: what is made for that one fits this one when
// there is nothing better. None for the plain light appearance and for names that are not known.
[[nodiscard]] std::optional<std::string_view> plainerAppearance(std::string_view name) noexcept;

}  // namespace kr::platform
