// When the last sound was started: sound hardware that has been silent for a while is asleep and swallows the
// start of the next sound. Any thread; the last one to set the time wins.
#pragma once

#include <optional>

namespace kr {

// Seconds since 1 January 1970; none before the first sound.
[[nodiscard]] std::optional<double> lastSoundTime();

void setLastSoundTime(double seconds);

// Whether the hardware may be asleep by now, where the last sound was at that time.
[[nodiscard]] bool needsWaking(std::optional<double> lastSound, double now);

}  // namespace kr
