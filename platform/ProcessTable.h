// The system's table of running applications: who runs, what each is called and where it lies. Every answer
// is about the moment of the call; a process may end in the middle of any of them, which reads as "none". Any
// thread.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/SerialNumber.h"

namespace kr::platform {

// What the system keeps of every process.
struct ProcessRecord {
  std::uint32_t signature = 0;  // four-character application code, '????' where the application has none
  std::string name;             // UTF-8
};

class ProcessTable {
 public:
  virtual ~ProcessTable() = default;

  // Every application of the session, oldest first: the same processes come in the same order at every call.
  // The running program itself and background applications are among them.
  [[nodiscard]] virtual std::vector<SerialNumber> all() = 0;

  // The running program; none when the system does not know it.
  [[nodiscard]] virtual std::optional<SerialNumber> current() = 0;

  // The application with this process ID; none when there is no such process.
  [[nodiscard]] virtual std::optional<SerialNumber> forPID(pid_t pid) = 0;

  // The process ID; none once the process has ended, also when its ID belongs to another process by now.
  [[nodiscard]] virtual std::optional<pid_t> pid(SerialNumber process) = 0;

  // Whether both numbers name one process.
  [[nodiscard]] virtual bool same(SerialNumber one, SerialNumber other) = 0;

  // Signature and name; none for a process that has ended.
  [[nodiscard]] virtual std::optional<ProcessRecord> record(SerialNumber process) = 0;

  // The name in the user's language, UTF-8.
  [[nodiscard]] virtual std::optional<std::string> displayName(SerialNumber process) = 0;

  // Path of the application's bundle, or of its executable where it has no bundle; file-system bytes.
  [[nodiscard]] virtual std::optional<std::string> bundleLocation(SerialNumber process) = 0;

  // All that the system says about the process, as a serialised property list whose root is a dictionary (it
  // holds at least what of "CFBundleIdentifier", "LSBackgroundOnly" and "LSUIElement" the bundle has).
  [[nodiscard]] virtual std::optional<std::string> information(SerialNumber process) = 0;

  // Whether the process was started from an application package of this system's native kind.
  [[nodiscard]] virtual bool isNativePackage(SerialNumber process) = 0;

  // The data of the resource 'vers' 1 of an application without a bundle; none where there are no resource
  // files.
  [[nodiscard]] virtual std::optional<std::string> versionResource(SerialNumber process) = 0;

  // Start of the process in seconds since 1970 UTC; 0.0 when the kernel does not say.
  [[nodiscard]] virtual double startTime(pid_t pid) = 0;

  // User CPU time as "minutes:seconds", the seconds with a fraction; none when it cannot be had.
  [[nodiscard]] virtual std::optional<std::string> userTime(pid_t pid) = 0;
};

}  // namespace kr::platform
