#include "library/process/ChangeNames.h"

#include <array>

#include "platform/ProcessEvents.h"

namespace kr {
namespace {

struct Change {
  std::uint32_t kind;
  std::string_view name;
};

constexpr std::array<Change, 3> kChanges{{{platform::kApplicationLaunched, "started"},
                                          {platform::kApplicationEnded, "ended"},
                                          {platform::kFrontApplicationChanged, "front"}}};

}  // namespace

std::string_view changeName(std::uint32_t kind) {
  for (const Change& change : kChanges) {
    if (change.kind == kind) return change.name;
  }
  return {};
}

}  // namespace kr
