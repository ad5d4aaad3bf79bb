// The set of platform services in force. The logic asks for a service at the moment it needs one, so a test
// can put a service of its own in place for a scope:
//
//   kr::platform::Services set = kr::platform::services();
//   set.clock = &fakeClock;
//   kr::platform::ScopedServices scope(set);
#pragma once

namespace kr::platform {

class Accessibility;
class Alerts;
class AppleEvents;
class Applications;
class AudioDevices;
class Authorization;
class Clipboard;
class Clock;
class DesktopAppearance;
class DoNotDisturb;
class FileOperations;
class FileSystems;
class Launcher;
class LogSink;
class LoginItems;
class MenuBar;
class ProcessControl;
class ProcessEvents;
class ProcessTable;
class Program;
class SecureInput;
class StandardFolders;
class SystemVersion;
class UserInput;
class WindowOrder;

// Not owned; every pointer is set.
struct Services {
  Accessibility* accessibility;
  Alerts* alerts;
  AppleEvents* appleEvents;
  Applications* applications;
  AudioDevices* audioDevices;
  Authorization* authorization;
  Clipboard* clipboard;
  Clock* clock;
  DesktopAppearance* desktopAppearance;
  DoNotDisturb* doNotDisturb;
  FileOperations* files;
  FileSystems* fileSystems;
  Launcher* launcher;
  LogSink* log;
  LoginItems* loginItems;
  MenuBar* menuBar;
  ProcessControl* processControl;
  ProcessEvents* processEvents;
  ProcessTable* processes;
  Program* program;
  SecureInput* secureInput;
  StandardFolders* folders;
  SystemVersion* systemVersion;
  UserInput* userInput;
  WindowOrder* windowOrder;
};

// The set in force: the system's own until a ScopedServices replaces it. Any thread.
[[nodiscard]] const Services& services() noexcept;

// The services of the system that the program was built for. They live as long as the program.
[[nodiscard]] Services systemServices() noexcept;

// Puts another set in force for its own lifetime. Scopes nest. Not while another thread uses services.
class ScopedServices {
 public:
  explicit ScopedServices(const Services& replacement) noexcept;
  ~ScopedServices();
  ScopedServices(const ScopedServices&) = delete;
  ScopedServices& operator=(const ScopedServices&) = delete;

 private:
  Services previous_;
};

}  // namespace kr::platform
