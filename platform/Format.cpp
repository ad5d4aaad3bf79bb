#include "platform/Format.h"

#include <cmath>
#include <cstdio>
#include <limits>

namespace kr {
namespace {

constexpr std::string_view kFlagsWidthPrecision = "0123456789.+- #'";
constexpr std::string_view kLengthModifiers = "hljztq";
constexpr std::string_view kIntegerDirectives = "dixXuoc";
constexpr std::string_view kFloatDirectives = "fFeEgGaA";

bool contains(std::string_view set, char character) {
  return set.find(character) != std::string_view::npos;
}

// The number printed by the C library with the flags, width and precision of the directive.
template <class Number>
std::string printed(const std::string& directive, Number number) {
  // The directive comes from a format of the program, cut down to flags, width, precision and one conversion.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wformat-nonliteral"
#pragma clang diagnostic ignored "-Wformat-security"
  const int length = std::snprintf(nullptr, 0, directive.c_str(), number);
  if (length < 0) return {};
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  std::snprintf(text.data(), text.size(), directive.c_str(), number);
#pragma clang diagnostic pop
  text.pop_back();
  return text;
}

// Without its fraction. What does not fit in is the largest or smallest integer, and no number is 0.
long long integerPart(double number) {
  using Limits = std::numeric_limits<long long>;
  constexpr double kTooLarge = 0x1p63;
  if (std::isnan(number)) return 0;
  if (number >= kTooLarge) return Limits::max();
  if (number < -kTooLarge) return Limits::min();
  return static_cast<long long>(number);
}

std::string inDecimal(const FormatArgument& argument) {
  if (const auto* text = std::get_if<std::string>(&argument)) return *text;
  if (const auto* integer = std::get_if<long long>(&argument)) return std::to_string(*integer);
  return printed("%g", std::get<double>(argument));
}

std::string converted(std::string_view options, char conversion, const FormatArgument& argument) {
  if (conversion == '@' || conversion == 's' || std::holds_alternative<std::string>(argument)) {
    return inDecimal(argument);
  }
  if (contains(kFloatDirectives, conversion)) {
    const auto* integer = std::get_if<long long>(&argument);
    const double number = integer ? static_cast<double>(*integer) : std::get<double>(argument);
    return printed("%" + std::string(options) + conversion, number);
  }
  const auto* real = std::get_if<double>(&argument);
  const long long number = real ? integerPart(*real) : std::get<long long>(argument);
  return printed("%" + std::string(options) + "ll" + conversion, number);
}

}  // namespace

std::string formatArguments(std::string_view format, std::span<const FormatArgument> arguments) {
  std::string text;
  std::size_t next = 0;
  for (std::size_t at = 0; at < format.size(); ++at) {
    if (format[at] != '%') {
      text += format[at];
      continue;
    }
    std::size_t end = at + 1;
    while (end < format.size() && contains(kFlagsWidthPrecision, format[end])) ++end;
    const std::string_view options = format.substr(at + 1, end - at - 1);
    while (end < format.size() && contains(kLengthModifiers, format[end])) ++end;
    if (end == format.size()) {
      text += format.substr(at);
      break;
    }
    const char conversion = format[end];
    const bool known = conversion == '@' || conversion == 's' || contains(kIntegerDirectives, conversion) ||
                       contains(kFloatDirectives, conversion);
    if (conversion == '%') {
      text += '%';
    } else if (known && next < arguments.size()) {
      text += converted(options, conversion, arguments[next++]);
    } else {
      text += format.substr(at, end - at + 1);
    }
    at = end;
  }
  return text;
}

}  // namespace kr
