// Questions about the level of the system, told by the version of its application framework. Any thread.
#pragma once

namespace kr {

enum class SystemLevel {
  pantherOrOlder,
  leopardOrNewer,
  snowleopardOrNewer,
  lionOrNewer,
  mountainLionOrNewer,
  mavericksOrNewer,
  yosemiteOrNewer,
  elCapitanOrNewer,
  sierraOrNewer,
  highSierraOrNewer,
  mojaveOrNewer,
  catalinaOrNewer,
};

// Whether a system whose application framework has this version is of the level.
[[nodiscard]] bool isOfLevel(SystemLevel level, double appKitVersion) noexcept;

// Whether the system that the program runs on is.
[[nodiscard]] bool isOfLevel(SystemLevel level);

}  // namespace kr
