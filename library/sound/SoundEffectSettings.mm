#import "library/sound/SoundEffectSettings.h"

namespace kr {
namespace {

NSString* const kCurrentDevice = @"current default system output device";

// The value under a key, when both are of the kind that is looked for.
template <class Kind>
Kind* valueIn(id dictionary, NSString* key) {
  if (![dictionary isKindOfClass:[NSDictionary class]]) return nil;
  id value = [dictionary objectForKey:key];
  return [value isKindOfClass:[Kind class]] ? value : nil;
}

NSString* deviceOfUser(NSDictionary* settings, NSString* user) {
  return valueIn<NSString>(valueIn<NSDictionary>(settings, user), kCurrentDevice);
}

NSString* preferredDevice(NSDictionary* settings) {
  NSArray* devices =
      valueIn<NSArray>(valueIn<NSDictionary>(settings, @"preferred devices"), @"system output");
  return [devices count] == 0 ? nil : valueIn<NSString>([devices objectAtIndex:0], @"uid");
}

}  // namespace

NSString* soundEffectDeviceInSettings(NSDictionary* settings, bool yosemiteOrNewer, uid_t user) {
  if (yosemiteOrNewer) return preferredDevice(settings);
  NSString* device = deviceOfUser(settings, [NSString stringWithFormat:@"%d", static_cast<int>(user)]);
  return device != nil ? device : deviceOfUser(settings, @"0");
}

}  // namespace kr
