#include "library/appearance/VerticalScroll.h"

namespace kr {

std::optional<double> verticalScroll(VerticalSpan part, VerticalSpan visible, bool preferTop) noexcept {
  if (part.height > visible.height) {
    if (preferTop) part.y += part.height - visible.height;
    part.height = visible.height;
  }
  if (visible.y > part.y) return part.y - visible.y;
  const double end = part.y + part.height;
  const double visibleEnd = visible.y + visible.height;
  // An end on the edge counts as one to scroll to, by nothing.
  if (end >= visibleEnd) return end - visibleEnd;
  return std::nullopt;
}

}  // namespace kr
