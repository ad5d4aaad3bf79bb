#include "platform/gnustep/CommandLineBytes.h"

#include <array>
#include <cstddef>

namespace kr::platform {
namespace {

struct HiddenByte {
  char* place;
  char byte;
};

// Room for a path of the greatest length in every argument that holds one; what is beyond that stays visible.
std::array<HiddenByte, 4UL * 4096> gHidden;
std::size_t gCount;

// Runs before anything else of the program, so it calls nothing; sanitizers are not ready yet either.
__attribute__((no_sanitize("address", "undefined"))) void hideCommandLineBytes(int count, char** words,
                                                                               char**) {
  HiddenByte* hidden = reinterpret_cast<HiddenByte*>(&gHidden);
  for (int word = 1; word < count; ++word) {
    for (char* place = words[word]; *place != '\0'; ++place) {
      if ((*place & 0x80) == 0 || gCount == sizeof gHidden / sizeof(HiddenByte)) continue;
      hidden[gCount].place = place;
      hidden[gCount].byte = *place;
      ++gCount;
      *place = '?';
    }
  }
}

__attribute__((section(".preinit_array"), used)) void (*gBeforeAllLibraries)(int, char**,
                                                                             char**) = hideCommandLineBytes;

}  // namespace

void restoreCommandLineBytes() noexcept {
  for (std::size_t index = 0; index < gCount; ++index) *gHidden[index].place = gHidden[index].byte;
  gCount = 0;
}

}  // namespace kr::platform
