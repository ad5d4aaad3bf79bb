// How far a view must be scrolled to show a part of it. Any thread.
#pragma once

#include <optional>

namespace kr {

// Along the y axis of the view, in its own coordinates.
struct VerticalSpan {
  double y;
  double height;
};

// What has to be added to the scroll position so that `part` is visible; none when it lies within `visible`
// without touching its far end. A part that is higher than what is visible is cut to its height: to the end
// with the greater y when that is preferred, else to the one with the smaller.
[[nodiscard]] std::optional<double> verticalScroll(VerticalSpan part, VerticalSpan visible,
                                                   bool preferTop) noexcept;

}  // namespace kr
