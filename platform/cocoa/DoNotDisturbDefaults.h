// The wish not to be disturbed, as user defaults have it.
#pragma once

#import <Foundation/Foundation.h>

#include "platform/DoNotDisturb.h"

namespace kr::platform {

// The domain of the defaults.
inline NSString* const kNotificationDefaults = @"com.apple.notificationcenterui";

// From the values under "dndStart" and "dndEnd"; nil, and what is no number, is not set.
[[nodiscard]] std::optional<DoNotDisturb::Schedule> scheduleFrom(id start, id end);

}  // namespace kr::platform
