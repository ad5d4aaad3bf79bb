#include "platform/linux/AccessibleEventNames.h"

#include <algorithm>
#include <array>

namespace kr::platform {
namespace {

constexpr std::string_view kPrefix = "org.a11y.atspi.Event.";
constexpr std::array<std::string_view, 7> kClasses{"Object", "Window",   "Document", "Focus",
                                                   "Mouse",  "Keyboard", "Terminal"};

// Of the bus's alphabet only; other systems' letters are not part of names.
bool isUpper(char character) {
  return character >= 'A' && character <= 'Z';
}
bool isLower(char character) {
  return character >= 'a' && character <= 'z';
}
char upper(char character) {
  return isLower(character) ? static_cast<char>(character - 'a' + 'A') : character;
}
char lower(char character) {
  return isUpper(character) ? static_cast<char>(character - 'A' + 'a') : character;
}

// "state-changed" -> "StateChanged"; none for what is no name of a member.
std::optional<std::string> joined(std::string_view dashed) {
  std::string result;
  bool startsWord = true;
  for (const char character : dashed) {
    if (character == '-') {
      if (startsWord) return std::nullopt;
      startsWord = true;
      continue;
    }
    if (!isUpper(character) && !isLower(character)) return std::nullopt;
    result += startsWord ? upper(character) : character;
    startsWord = false;
  }
  return startsWord && !dashed.empty() ? std::nullopt : std::optional(result);
}

// "StateChanged" -> "state-changed".
std::string dashed(std::string_view joined) {
  std::string result;
  for (const char character : joined) {
    if (isUpper(character) && !result.empty()) result += '-';
    result += lower(character);
  }
  return result;
}

// The part up to the next colon, which is taken off the text.
std::string_view nextPart(std::string_view& text) {
  const std::size_t end = std::min(text.find(':'), text.size());
  const std::string_view part = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return part;
}

}  // namespace

bool AccessibleEventName::covers(const AccessibleEventName& event) const {
  return interface == event.interface && (member.empty() || member == event.member) &&
         (detail.empty() || detail == event.detail);
}

std::optional<AccessibleEventName> parseEventName(std::string_view text) {
  const std::optional<std::string> name = joined(nextPart(text));
  if (!name || std::find(kClasses.begin(), kClasses.end(), *name) == kClasses.end()) return std::nullopt;
  const std::optional<std::string> member = joined(nextPart(text));
  if (!member || (member->empty() && !text.empty())) return std::nullopt;
  return AccessibleEventName{
      .interface = std::string(kPrefix) + *name, .member = *member, .detail = std::string(text)};
}

std::string eventNameText(const AccessibleEventName& event) {
  if (!event.interface.starts_with(kPrefix)) return {};
  std::string text =
      dashed(std::string_view(event.interface).substr(kPrefix.size())) + ":" + dashed(event.member);
  if (!event.detail.empty()) text += ":" + event.detail;
  return text;
}

}  // namespace kr::platform
