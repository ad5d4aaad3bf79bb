#include "platform/Applications.h"

#import <Foundation/Foundation.h>
#include <unistd.h>

#include <array>

#include "platform/Log.h"
#include "platform/Paths.h"
#include "platform/Services.h"
#include "platform/StandardFolders.h"
#include "platform/SystemServices.h"
#import "platform/cocoa/Bridging.h"
#import "platform/cocoa/PropertyLists.h"
#include "platform/linux/DesktopEntry.h"
#include "platform/linux/DetachedProcess.h"
#include "platform/linux/GLibOwner.h"
#include "platform/posix/Files.h"

namespace kr::platform {
namespace {

// What the system of the published log texts answers for a bundle that is no application.
constexpr std::int32_t kNotAnApplication = -10811;

constexpr std::string_view kExtension = "app";
constexpr std::array<std::string_view, 2> kExecutableFolders{"", "Contents/MacOS"};
constexpr std::array<std::string_view, 4> kIconTypes{"png", "svg", "tiff", ""};

bool isApplication(const std::string& path) {
  return paths::extension(path) == kExtension && files::isFolder(path);
}

std::string nameOf(const std::string& bundlePath) {
  return std::string(paths::withoutExtension(paths::lastComponent(bundlePath)));
}

// The first of the keys that has a text; the empty text when none has.
std::string text(NSDictionary* information, std::initializer_list<NSString*> keys) {
  for (NSString* key : keys) {
    id value = [information objectForKey:key];
    if ([value isKindOfClass:[NSString class]] && [value length] > 0) return toBytes(value);
  }
  return {};
}

// The program of a bundle in either layout; the empty text when it has none that may be run.
std::string executable(const std::string& bundlePath, NSDictionary* information) {
  std::string name = text(information, {@"CFBundleExecutable", @"NSExecutable"});
  if (name.empty()) name = nameOf(bundlePath);
  for (const std::string_view folder : kExecutableFolders) {
    std::string path = paths::joined(paths::joined(bundlePath, folder), name);
    if (!files::isFolder(path) && ::access(path.c_str(), X_OK) == 0) return path;
  }
  return {};
}

std::string icon(const std::string& bundlePath, NSDictionary* information) {
  const std::string name = text(information, {@"CFBundleIconFile", @"NSIcon", @"ApplicationIcon"});
  if (name.empty()) return {};
  for (const std::string_view type : kIconTypes) {
    std::string path = bundleResourcePath(bundlePath, name, type);
    // Desktops do not read the icon files of the other system.
    if (!path.empty() && paths::extension(path) != "icns") return path;
  }
  return {};
}

bool openDocument(const std::string& path) {
  const glib::Object<GFile> file(g_file_new_for_path(path.c_str()));
  const glib::String uri(g_file_get_uri(file.get()));
  GError* raw = nullptr;
  const bool opened = g_app_info_launch_default_for_uri(uri.get(), nullptr, &raw) != FALSE;
  if (raw != nullptr) {
    const glib::Error error(raw);
    log("could not open %@: %@", path, std::string_view(error->message));
  }
  return opened;
}

bool startApplication(const std::string& bundlePath) {
  const std::string program = executable(bundlePath, bundleInfoDictionary(bundlePath));
  if (program.empty()) {
    log("could not start %@: no executable", bundlePath);
    return false;
  }
  const std::error_code error = startDetached({program}, services().folders->home());
  if (error) log("could not start %@: %@", program, error.message());
  return !error;
}

class DesktopApplications final : public Applications {
 public:
  std::int32_t registerApplication(const std::string& path) override {
    @autoreleasepool {
      if (!isApplication(path)) return kNotAnApplication;
      NSDictionary* information = bundleInfoDictionary(path);
      const std::string program = executable(path, information);
      if (program.empty()) return kNotAnApplication;
      const std::string name =
          text(information, {@"CFBundleDisplayName", @"CFBundleName", @"ApplicationName"});
      const std::string identifier = text(information, {@"CFBundleIdentifier"});
      return registerEntry({.identifier = identifier.empty() ? nameOf(path) : identifier,
                            .name = name.empty() ? nameOf(path) : name,
                            .executable = program,
                            .iconPath = icon(path, information)})
          .value();
    }
  }

  bool open(const std::string& path) override {
    @autoreleasepool {
      return isApplication(path) ? startApplication(path) : files::exists(path) && openDocument(path);
    }
  }

  void openInBackground(const std::string& path) override { (void)open(path); }

  // File managers here watch the folders that they show.
  void noteFileSystemChanged(const std::string&) override {}
};

}  // namespace

Applications& systemApplications() noexcept {
  static DesktopApplications applications;
  return applications;
}

}  // namespace kr::platform
