// Questions about the level of the system, told by the version of its application framework. Any thread.
#pragma once

namespace kr {

[[nodiscard]] bool mojaveOrNewer();

}  // namespace kr
