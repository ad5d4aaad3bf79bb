// Formats log texts that are written in the notation of the Cocoa string formats, without Cocoa: "%@" takes
// text (an absent text prints as "(null)"), "%d", "%u", "%X" and the like take integers, "%f" and the like
// take floating-point numbers, "%s" takes text, "%%" is a percent sign. A directive without an argument is
// printed as it stands.
//
//   kr::formatted("launched: %d", 1)                            == "launched: 1"
//   kr::formatted("autolaunch = %@", std::optional<std::string>{}) == "autolaunch = (null)"
#pragma once

#include <concepts>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace kr {

using FormatArgument = std::variant<std::string, long long, double>;

inline constexpr std::string_view kMissingText = "(null)";

// One argument as the formatter takes it.
[[nodiscard]] inline FormatArgument formatArgument(std::string_view text) {
  return std::string(text);
}
template <std::same_as<std::optional<std::string>> Text>
[[nodiscard]] FormatArgument formatArgument(const Text& text) {
  return text ? *text : std::string(kMissingText);
}
template <class Number>
  requires std::is_arithmetic_v<Number>
[[nodiscard]] FormatArgument formatArgument(Number number) {
  if constexpr (std::is_floating_point_v<Number>) {
    return static_cast<double>(number);
  } else {
    return static_cast<long long>(number);
  }
}

// The formatter behind kr::formatted. Arguments are taken in order; a number given for "%@" prints in
// decimal, and a text given for a number directive prints as it is.
[[nodiscard]] std::string formatArguments(std::string_view format, std::span<const FormatArgument> arguments);

template <class... Arguments>
[[nodiscard]] std::string formatted(std::string_view format, const Arguments&... arguments) {
  if constexpr (sizeof...(Arguments) == 0) {
    return formatArguments(format, {});
  } else {
    const FormatArgument list[] = {formatArgument(arguments)...};
    return formatArguments(format, list);
  }
}

}  // namespace kr
