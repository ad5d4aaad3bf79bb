// The system's application database and the opening of applications and documents. Any thread.
#pragma once

#include <cstdint>
#include <string>

namespace kr::platform {

class Applications {
 public:
  virtual ~Applications() = default;

  // Makes an application bundle known to the system. 0 is success, any other value the system's status.
  [[nodiscard]] virtual std::int32_t registerApplication(const std::string& path) = 0;

  // Starts an application bundle, or opens a document with its default application. False when nothing was
  // started. Does not wait for what it started.
  [[nodiscard]] virtual bool open(const std::string& path) = 0;

  // Starts an application bundle, or hands a document to the program that opens such documents on this
  // desktop, and returns at once: nobody hears whether it could be opened. A document on a disk or a desktop
  // that does not answer may get lost when the caller's program ends.
  virtual void openInBackground(const std::string& path) = 0;

  // Opens an address ("https://...") with the program that is the user's choice for its scheme, which is
  // started when it does not run; does not wait for it. False when there is none, and the log says why.
  [[nodiscard]] virtual bool openAddress(const std::string& address) = 0;

  // Tells file viewers that something changed at the path.
  virtual void noteFileSystemChanged(const std::string& path) = 0;
};

}  // namespace kr::platform
