#include "platform/Applications.h"

#import <Foundation/Foundation.h>
#include <fcntl.h>
#include <gio/gdesktopappinfo.h>
#include <unistd.h>

#include <array>
#include <mutex>
#include <optional>

#include "platform/Log.h"
#include "platform/Paths.h"
#include "platform/Services.h"
#include "platform/StandardFolders.h"
#include "platform/SystemServices.h"
#import "platform/cocoa/Bridging.h"
#import "platform/cocoa/PropertyLists.h"
#include "platform/linux/BackgroundWork.h"
#include "platform/linux/DesktopEntry.h"
#include "platform/linux/DetachedProcess.h"
#include "platform/linux/GLibOwner.h"
#include "platform/posix/FileDescriptor.h"
#include "platform/posix/Files.h"

namespace kr::platform {
namespace {

// What macOS answers for a bundle that is no application.
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

// Why nothing was opened; none when something was.
using Reason = std::optional<std::string>;

Reason whyNotOpened(const std::string& what, const glib::Error& error) {
  return "could not open " + what + ": " + (error ? error->message : "no application for it");
}

// Hands the address to the application, which gets nothing of what the installer has open: its output has no
// place in the installer's log.
bool handOver(GAppInfo* application, const char* uri, GError** error) {
  if (application == nullptr || !G_IS_DESKTOP_APP_INFO(application)) return false;
  GDesktopAppInfo* const entry = G_DESKTOP_APP_INFO(application);
  // What is started by a message has it only when that has left this process, which may be about to end.
  const bool byMessage = g_desktop_app_info_get_boolean(entry, "DBusActivatable") != FALSE;
  const glib::Object<GDBusConnection> bus(byMessage ? g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr)
                                                    : nullptr);
  std::string address(uri);
  GList uris{address.data(), nullptr, nullptr};
  const posix::FileDescriptor null(::open("/dev/null", O_RDWR | O_CLOEXEC));
  const bool opened = g_desktop_app_info_launch_uris_as_manager_with_fds(
                          entry, &uris, nullptr, G_SPAWN_SEARCH_PATH, nullptr, nullptr, nullptr, nullptr,
                          null.get(), null.get(), null.get(), error) != FALSE;
  if (opened && bus) g_dbus_connection_flush_sync(bus.get(), nullptr, nullptr);
  return opened;
}

Reason openDocument(const std::string& path) {
  if (!files::exists(path)) return "could not open " + path + ": it does not exist";
  const glib::Object<GFile> file(g_file_new_for_path(path.c_str()));
  GError* raw = nullptr;
  const glib::Object<GAppInfo> application(g_file_query_default_handler(file.get(), nullptr, &raw));
  const glib::String uri(g_file_get_uri(file.get()));
  if (handOver(application.get(), uri.get(), &raw)) return std::nullopt;
  return whyNotOpened(path, glib::Error(raw));
}

Reason openWithHandler(const std::string& address) {
  GError* raw = nullptr;
  const glib::String scheme(g_uri_parse_scheme(address.c_str()));
  const glib::Object<GAppInfo> handler(scheme ? g_app_info_get_default_for_uri_scheme(scheme.get())
                                              : nullptr);
  if (handOver(handler.get(), address.c_str(), &raw)) return std::nullopt;
  return whyNotOpened(address, glib::Error(raw));
}

Reason startApplication(const std::string& bundlePath) {
  const std::string program = executable(bundlePath, bundleInfoDictionary(bundlePath));
  if (program.empty()) return "could not start " + bundlePath + ": no executable";
  const std::error_code error = startDetached({program}, services().folders->home());
  if (error) return "could not start " + program + ": " + error.message();
  return std::nullopt;
}

Reason openItem(const std::string& path) {
  @autoreleasepool {
    if (isApplication(path)) return startApplication(path);
    return openDocument(path);
  }
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

  // Whoever opens again and again hears once why it fails.
  bool open(const std::string& path) override {
    const Reason reason = openItem(path);
    const std::lock_guard lock(mutex_);
    if (reason && reason != lastReason_) log("%@", *reason);
    lastReason_ = reason;
    return !reason;
  }

  // The way of a document leads over its disk and the bus, either of which may not answer.
  void openInBackground(const std::string& path) override {
    @autoreleasepool {
      if (isApplication(path)) {
        (void)startApplication(path);
      } else {
        workInBackground([path] { (void)openDocument(path); });
      }
    }
  }

  bool openAddress(const std::string& address) override {
    const Reason reason = openWithHandler(address);
    if (reason) log("%@", *reason);
    return !reason;
  }

  // File managers here watch the folders that they show.
  void noteFileSystemChanged(const std::string&) override {}

 private:
  std::mutex mutex_;
  Reason lastReason_;
};

}  // namespace

Applications& systemApplications() noexcept {
  static DesktopApplications& applications = *new DesktopApplications;
  return applications;
}

}  // namespace kr::platform
