#include "library/utilities/DarkMode.h"

#include "library/utilities/SystemLevels.h"
#include "platform/DesktopAppearance.h"
#include "platform/Services.h"

namespace kr {

bool menuThemeIsDark() {
  return isOfLevel(SystemLevel::yosemiteOrNewer) && platform::services().desktopAppearance->isDark();
}

bool appearanceIsDark() {
  return isOfLevel(SystemLevel::mojaveOrNewer) && menuThemeIsDark();
}

}  // namespace kr
