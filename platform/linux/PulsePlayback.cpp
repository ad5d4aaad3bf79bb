#include "platform/linux/PulsePlayback.h"

#include <algorithm>
#include <memory>

#include "platform/Log.h"

namespace kr::platform {
namespace {

constexpr PulseConnection::Seconds kToConnect{5};
constexpr PulseConnection::Seconds kToTakeSamples{2};
constexpr PulseConnection::Seconds kToFinish{5};
constexpr double kBuffered = 0.25;  // seconds
constexpr std::uint32_t kServersChoice = static_cast<std::uint32_t>(-1);

void announceState(pa_stream*, void* connection) {
  static_cast<PulseConnection*>(connection)->announce();
}

void announceRoom(pa_stream*, std::size_t, void* connection) {
  static_cast<PulseConnection*>(connection)->announce();
}

// With the lock. The server knows from the role that this is no music: the user has a volume of its own for
// such sounds.
pa_stream* newStream(PulseConnection& connection, const pa_sample_spec& samples) {
  const PulseLibrary& pulse = connection.pulse();
  const std::unique_ptr<pa_proplist, decltype(&::pa_proplist_free)> properties(pulse.proplist_new(),
                                                                               pulse.proplist_free);
  pulse.proplist_sets(properties.get(), PA_PROP_MEDIA_ROLE, "event");
  pa_stream* stream =
      pulse.stream_new_with_proplist(connection.context(), "sound", &samples, nullptr, properties.get());
  if (stream == nullptr) return nullptr;
  pulse.stream_set_state_callback(stream, announceState, &connection);
  pulse.stream_set_write_callback(stream, announceRoom, &connection);
  return stream;
}

}  // namespace

PulsePlayback::~PulsePlayback() {
  close();
}

bool PulsePlayback::open(const PulseFormat& format, const std::optional<std::string>& device) {
  close();
  connection_ = PulseConnection::shared();
  if (connection_ == nullptr || !connection_->isReady(kToConnect)) return false;
  const PulseLibrary& pulse = connection_->pulse();
  const pa_sample_spec samples{PA_SAMPLE_FLOAT32NE, format.framesPerSecond, format.channels};
  const auto bufferedFrames = static_cast<std::uint32_t>(kBuffered * format.framesPerSecond);
  const pa_buffer_attr buffer{
      .maxlength = kServersChoice,
      .tlength = bufferedFrames * static_cast<std::uint32_t>(sizeof(float)) * format.channels,
      .prebuf = kServersChoice,
      .minreq = kServersChoice,
      .fragsize = kServersChoice};
  {
    const PulseConnection::Lock lock(*connection_);
    if (connection_->context() != nullptr) stream_ = newStream(*connection_, samples);
    if (stream_ != nullptr) {
      pulse.stream_connect_playback(stream_, device ? device->c_str() : nullptr, &buffer, PA_STREAM_NOFLAGS,
                                    nullptr, nullptr);
    }
  }
  const auto isDecided = [&] { return !isUsable() || pulse.stream_get_state(stream_) == PA_STREAM_READY; };
  const bool decided = connection_->waitUntil(isDecided, kToConnect);
  {
    const PulseConnection::Lock lock(*connection_);
    if (isUsable() && pulse.stream_get_state(stream_) == PA_STREAM_READY) return true;
    log("*** no sound: %@", decided ? connection_->problem() : "the device does not answer");
  }
  close();
  return false;
}

// With the lock.
bool PulsePlayback::isUsable() const {
  return stream_ != nullptr && PA_STREAM_IS_GOOD(connection_->pulse().stream_get_state(stream_));
}

bool PulsePlayback::write(std::span<const float> samples) {
  if (stream_ == nullptr) return false;
  const PulseLibrary& pulse = connection_->pulse();
  auto left = std::as_bytes(samples);
  while (!left.empty()) {
    const auto hasRoom = [&] { return !isUsable() || pulse.stream_writable_size(stream_) > 0; };
    if (!connection_->waitUntil(hasRoom, kToTakeSamples)) return false;
    const PulseConnection::Lock lock(*connection_);
    if (!isUsable()) return false;
    const std::size_t count = std::min(left.size(), pulse.stream_writable_size(stream_));
    if (pulse.stream_write(stream_, left.data(), count, nullptr, 0, PA_SEEK_RELATIVE) < 0) return false;
    left = left.subspan(count);
  }
  return true;
}

void PulsePlayback::finish() {
  if (stream_ == nullptr) return;
  const PulseLibrary& pulse = connection_->pulse();
  struct Drain {
    PulseConnection& connection;
    bool done = false;
  } drain{*connection_};
  pa_operation* operation = nullptr;
  {
    const PulseConnection::Lock lock(*connection_);
    if (!isUsable()) return;
    operation = pulse.stream_drain(
        stream_,
        [](pa_stream*, int, void* context) {
          auto& ended = *static_cast<Drain*>(context);
          ended.done = true;
          ended.connection.announce();
        },
        &drain);
  }
  if (operation == nullptr) return;
  (void)connection_->waitUntil([&] { return drain.done || !isUsable(); }, kToFinish);
  const PulseConnection::Lock lock(*connection_);
  pulse.operation_cancel(operation);
  pulse.operation_unref(operation);
}

void PulsePlayback::close() {
  if (stream_ == nullptr) return;
  const PulseLibrary& pulse = connection_->pulse();
  const PulseConnection::Lock lock(*connection_);
  pulse.stream_set_state_callback(stream_, nullptr, nullptr);
  pulse.stream_set_write_callback(stream_, nullptr, nullptr);
  pulse.stream_disconnect(stream_);
  pulse.stream_unref(stream_);
  stream_ = nullptr;
}

}  // namespace kr::platform
