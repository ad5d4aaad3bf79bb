// Desktop services with settable answers: folders, file systems, login items, the running program, who has
// started it, its system, the look of the desktop, the user's input and wishes, the clipboard, the
// application database.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/Applications.h"
#include "platform/Clipboard.h"
#include "platform/DesktopAppearance.h"
#include "platform/DoNotDisturb.h"
#include "platform/FileSystems.h"
#include "platform/Launcher.h"
#include "platform/LoginItems.h"
#include "platform/Paths.h"
#include "platform/Program.h"
#include "platform/SecureInput.h"
#include "platform/StandardFolders.h"
#include "platform/SystemVersion.h"
#include "platform/UserInput.h"

namespace kr::platform::testing {

class FixedFolders final : public StandardFolders {
 public:
  std::string homeFolder = "/home/user";
  std::optional<std::string> local = "/Applications";
  std::optional<std::string> user = "/home/user/Applications";
  std::map<std::string, std::string> displayNames;  // by path; others show their last component

  std::string home() override { return homeFolder; }
  std::optional<std::string> localApplications() override { return local; }
  std::optional<std::string> userApplications() override { return user; }
  std::string displayName(const std::string& path) override {
    const auto named = displayNames.find(path);
    return named != displayNames.end() ? named->second : std::string(kr::paths::lastComponent(path));
  }
};

class FixedLoginItems final : public LoginItems {
 public:
  std::optional<std::vector<std::string>> items = std::vector<std::string>{};

  std::optional<std::vector<std::string>> paths() override { return items; }
};

class FixedProgram final : public Program {
 public:
  std::vector<std::string> words{"/Applications/VelmoraInstaller.app/VelmoraInstaller"};
  std::string bundle = "/Applications/VelmoraInstaller.app";
  bool debugged = false;

  std::vector<std::string> arguments() override { return words; }
  std::string bundlePath() override { return bundle; }
  bool isDebugged() override { return debugged; }
};

class FixedFileSystems final : public FileSystems {
 public:
  std::map<std::string, FileSystemType> types;  // by path; of others the type cannot be had
  std::map<std::string, std::string> aliases;
  std::vector<std::string> volumes{"/Volumes"};

  FileSystemType type(const std::string& path) override {
    const auto found = types.find(path);
    return found != types.end() ? found->second : FileSystemType{.status = -1, .name = ""};
  }
  std::optional<std::string> aliasTarget(const std::string& path) override {
    const auto found = aliases.find(path);
    return found != aliases.end() ? std::optional(found->second) : std::nullopt;
  }
  std::vector<std::string> volumeFolders() override { return volumes; }
};

class FixedLauncher final : public Launcher {
 public:
  std::optional<std::string> launcher;

  std::optional<std::string> signature() override { return launcher; }
};

class FixedClipboard final : public Clipboard {
 public:
  long count = 0;

  long changeCount() override { return count; }
};

class FixedSecureInput final : public SecureInput {
 public:
  std::optional<std::string> text;

  std::optional<std::string> report() override { return text; }
};

class FixedSystemVersion final : public SystemVersion {
 public:
  double appKit = 1894;
  std::map<VersionPart, std::int32_t> parts{{VersionPart::major, 10},
                                            {VersionPart::minor, 15},
                                            {VersionPart::bugfix, 0},
                                            {VersionPart::packed, 0x1095}};  // what is not here has no answer
  int questions = 0;

  std::optional<std::int32_t> part(VersionPart part) override {
    ++questions;
    const auto found = parts.find(part);
    return found == parts.end() ? std::nullopt : std::optional(found->second);
  }
  double appKitVersion() override { return appKit; }
};

class FixedDesktopAppearance final : public DesktopAppearance {
 public:
  bool dark = false;

  bool isDark() override { return dark; }
};

class FixedDoNotDisturb final : public DoNotDisturb {
 public:
  bool on = false;
  std::optional<Schedule> period;

  bool isOn() override { return on; }
  std::optional<Schedule> schedule() override { return period; }
};

class FixedUserInput final : public UserInput {
 public:
  std::optional<std::chrono::nanoseconds> idle;

  std::optional<std::chrono::nanoseconds> idleTime() override { return idle; }
};

// Records what it is asked for. Any thread.
class RecordingApplications final : public Applications {
 public:
  std::int32_t registrationStatus = 0;
  int opensAfterAttempts = 1;       // the attempt at which open() succeeds; 0 is never
  std::function<void(int)> onOpen;  // called with the number of each attempt, on the thread that opens

  std::int32_t registerApplication(const std::string& path) override {
    record("register " + path);
    return registrationStatus;
  }
  bool open(const std::string& path) override {
    record("open " + path);
    const int attempt = ++attempts_;
    if (onOpen) onOpen(attempt);
    return attempt == opensAfterAttempts;
  }
  void openInBackground(const std::string& path) override { record("openInBackground " + path); }
  bool openAddress(const std::string& address) override {
    record("openAddress " + address);
    return true;
  }
  void noteFileSystemChanged(const std::string& path) override { record("noteFileSystemChanged " + path); }

  // Every call so far, as "operation path".
  [[nodiscard]] std::vector<std::string> calls() const {
    const std::lock_guard lock(mutex_);
    return calls_;
  }

 private:
  void record(std::string call) {
    const std::lock_guard lock(mutex_);
    calls_.push_back(std::move(call));
  }

  mutable std::mutex mutex_;
  std::vector<std::string> calls_;
  std::atomic<int> attempts_ = 0;
};

}  // namespace kr::platform::testing
