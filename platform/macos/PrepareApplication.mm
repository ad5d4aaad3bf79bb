#include "platform/PrepareApplication.h"

namespace kr::platform {

// AppKit here has the look and the defaults that the application expects.
void prepareApplication() {}

}  // namespace kr::platform
