#include "library/process/DiagnosticsList.h"

#include <algorithm>
#include <utility>

#include "platform/Format.h"

namespace kr {
namespace {

constexpr const char* kNone = "none";
constexpr std::string_view kReport = "Foreground processes:\n%@\n\nBackground processes:\n%@\n";

std::string joinedInOrder(std::vector<std::string> texts, const TextOrder& before) {
  if (texts.empty()) return kNone;
  std::stable_sort(texts.begin(), texts.end(), before);
  std::string result;
  for (const std::string& text : texts) {
    if (&text != &texts.front()) result += '\n';
    result += text;
  }
  return result;
}

}  // namespace

std::string processListText(std::vector<std::string> foreground, std::vector<std::string> background,
                            const TextOrder& before) {
  return formatted(kReport, joinedInOrder(std::move(foreground), before),
                   joinedInOrder(std::move(background), before));
}

}  // namespace kr
