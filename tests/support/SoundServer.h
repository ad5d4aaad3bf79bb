// A sound server of the test's own (PulseAudio) whose devices are heard by nobody but the test. For its
// lifetime sound libraries find it and no other.
//
//   SoundServer server({.devices = {"first", "second"}, .defaultDevice = "second"});
//   Recording heard(server, "second");
//   ...
//   EXPECT_TRUE(eventually([&] { return heard.loudness() > 0.01; }));
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/Child.h"
#include "tests/support/Desktop.h"
#include "tests/support/ScratchFolder.h"

namespace kr::testing {

struct SoundServerParts {
  std::vector<std::string> devices{"first", "second"};
  std::string defaultDevice = "first";
};

class SoundServer {
 public:
  // Ready once this returns. Throws std::runtime_error where it does not start.
  explicit SoundServer(const SoundServerParts& parts = {});

  // "unix:/path": what PULSE_SERVER says.
  [[nodiscard]] const std::string& address() const { return address_; }

  // What the server says about the sounds that play.
  [[nodiscard]] std::string inputs() const;

  // Ends it as if it had crashed; makes it hang, as if it had been stopped, and go on again.
  void stop() { server_.stop(); }
  void hang();
  void goOn();

 private:
  ScratchFolder folder_;
  std::string address_;
  std::vector<std::unique_ptr<ScopedVariable>> environment_;
  Child server_;
};

// A sound server that takes connections and never says a word, for its lifetime.
class SilentSoundServer {
 public:
  SilentSoundServer();
  ~SilentSoundServer();

 private:
  ScratchFolder folder_;
  int listener_;
  std::optional<ScopedVariable> variable_;
};

// No sound server, whatever this machine has, for its lifetime.
class NoSoundServer {
 public:
  NoSoundServer();

 private:
  ScratchFolder folder_;
  ScopedVariable variable_;
};

// What a device puts out, from now on.
class Recording {
 public:
  // Runs once this returns. Throws std::runtime_error where it does not start.
  Recording(const SoundServer& server, const std::string& device);

  // Root mean square of the loudest tenth of a second so far; 1 is as loud as can be.
  [[nodiscard]] double loudness() const;

  // How many seconds of what was heard so far were not silent.
  [[nodiscard]] double seconds() const;

 private:
  [[nodiscard]] std::vector<double> tenths() const;

  ScratchFolder folder_;
  std::string file_;
  Child recorder_;
};

}  // namespace kr::testing
