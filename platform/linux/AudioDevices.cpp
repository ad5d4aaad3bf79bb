#include "platform/AudioDevices.h"

#include "platform/SystemServices.h"
#include "platform/linux/PulseConnection.h"

namespace kr::platform {
namespace {

constexpr std::size_t kLongestName = 63;

// At most so many bytes, cut between two characters.
std::string cut(std::string text) {
  if (text.size() <= kLongestName) return text;
  std::size_t end = kLongestName;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  text.resize(end);
  return text;
}

// The devices of the sound server. It has one default device, for alerts as for all else; a sound server's
// device has one name in every scope.
class ServerDevices final : public AudioDevices {
 public:
  std::optional<AudioDeviceID> systemOutput() override {
    PulseConnection* server = PulseConnection::shared();
    const std::optional<PulseSink> sink = server ? server->defaultSink() : std::nullopt;
    return sink ? std::optional(sink->index) : std::nullopt;
  }

  std::optional<std::string> uniqueIdentifier(AudioDeviceID device, AudioScope) override {
    PulseConnection* server = PulseConnection::shared();
    const std::optional<PulseSink> sink = server ? server->sink(device) : std::nullopt;
    return sink ? std::optional(sink->name) : std::nullopt;
  }

  std::vector<AudioDevice> all() override {
    std::vector<AudioDevice> devices;
    PulseConnection* server = PulseConnection::shared();
    if (server == nullptr) return devices;
    for (const PulseSink& sink : server->sinks()) {
      devices.push_back({cut(sink.description), cut(sink.maker), sink.name});
    }
    return devices;
  }
};

}  // namespace

AudioDevices& systemAudioDevices() noexcept {
  static ServerDevices& devices = *new ServerDevices;
  return devices;
}

}  // namespace kr::platform
