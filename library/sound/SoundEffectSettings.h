// The sound-effect device as the system's audio settings name it. Any thread.
#pragma once

#import <Foundation/Foundation.h>

#include <sys/types.h>

namespace kr {

// The identifier of the device in the settings; nil when a level of them is missing or of another kind. Up to
// 10.9 the settings hold a device for each user, under the user's number, and one for all under "0"; since
// then a list of devices in the order of preference.
[[nodiscard]] NSString* soundEffectDeviceInSettings(NSDictionary* settings, bool yosemiteOrNewer, uid_t user);

}  // namespace kr
