#import "platform/cocoa/DoNotDisturbDefaults.h"

namespace kr::platform {

std::optional<DoNotDisturb::Schedule> scheduleFrom(id start, id end) {
  for (id value in @[ start ?: [NSNull null], end ?: [NSNull null] ]) {
    if (![value respondsToSelector:@selector(integerValue)]) return std::nullopt;
  }
  return DoNotDisturb::Schedule{.start = [start integerValue], .end = [end integerValue]};
}

}  // namespace kr::platform
