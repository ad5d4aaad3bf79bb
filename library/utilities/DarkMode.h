// What is dark on the user's desktop. Asked anew each time. Any thread.
#pragma once

namespace kr {

// Whether menus are: never before 10.10, else when the user has chosen the dark style.
[[nodiscard]] bool menuThemeIsDark();

// Whether everything else is as well: never before 10.14.
[[nodiscard]] bool appearanceIsDark();

}  // namespace kr
