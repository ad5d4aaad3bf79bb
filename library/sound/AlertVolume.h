// How loud alerts are to play. Any thread.
#pragma once

namespace kr {

// The playback volume, from 0 to 1, for the volume that the system has stored for alerts. The stored one is
// that of the slider the user sets, which is not in proportion to what is heard.
[[nodiscard]] float playbackVolume(float stored);

}  // namespace kr
