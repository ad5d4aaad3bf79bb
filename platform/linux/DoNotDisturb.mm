#include "platform/DoNotDisturb.h"

#include "platform/SystemServices.h"
#import "platform/cocoa/DoNotDisturbDefaults.h"
#include "platform/linux/GLibOwner.h"

namespace kr::platform {
namespace {

constexpr const char* kNotifications = "org.gnome.desktop.notifications";
constexpr const char* kShowBanners = "show-banners";

// Whether the desktop's own setting lets no notification appear. Desktops without that setting have none.
bool bannersAreOff() {
  GSettingsSchemaSource* source = g_settings_schema_source_get_default();
  if (source == nullptr) return false;
  GSettingsSchema* schema = g_settings_schema_source_lookup(source, kNotifications, TRUE);
  if (schema == nullptr) return false;
  const bool isKnown = g_settings_schema_has_key(schema, kShowBanners) != FALSE;
  g_settings_schema_unref(schema);
  if (!isKnown) return false;
  const glib::Object<GSettings> settings(g_settings_new(kNotifications));
  const glib::Variant value(g_settings_get_value(settings.get(), kShowBanners));
  return g_variant_is_of_type(value.get(), G_VARIANT_TYPE_BOOLEAN) != FALSE &&
         g_variant_get_boolean(value.get()) == FALSE;
}

// From the disk: GNUstep does not notice what another program writes for a domain after it has read it.
NSDictionary* defaults() {
  NSString* file = [kNotificationDefaults stringByAppendingPathExtension:@"plist"];
  NSString* path = [GSDefaultsRootForUser(NSUserName()) stringByAppendingPathComponent:file];
  return [NSDictionary dictionaryWithContentsOfFile:path];
}

class DesktopSettings final : public DoNotDisturb {
 public:
  bool isOn() override {
    @autoreleasepool {
      id value = [defaults() objectForKey:@"doNotDisturb"];
      return ([value respondsToSelector:@selector(boolValue)] && [value boolValue]) || bannersAreOff();
    }
  }

  std::optional<Schedule> schedule() override {
    @autoreleasepool {
      NSDictionary* values = defaults();
      return scheduleFrom([values objectForKey:@"dndStart"], [values objectForKey:@"dndEnd"]);
    }
  }
};

}  // namespace

DoNotDisturb& systemDoNotDisturb() noexcept {
  static DesktopSettings& settings = *new DesktopSettings;
  return settings;
}

}  // namespace kr::platform
