#include "library/utilities/TintImageName.h"

#include "library/utilities/DarkMode.h"
#include "library/utilities/SystemLevels.h"

namespace kr {
namespace {

const char* look() {
  if (!isOfLevel(SystemLevel::yosemiteOrNewer)) return "tintMav";
  return menuThemeIsDark() ? "tintYosDark" : "tintYos";
}

}  // namespace

std::string tintImageName(bool tintIsBlue) {
  return std::string(look()) + (tintIsBlue ? "Blue" : "Graphite");
}

}  // namespace kr
