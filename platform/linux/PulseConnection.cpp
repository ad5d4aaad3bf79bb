#include "platform/linux/PulseConnection.h"

#include <memory>

#include "platform/Log.h"
#include "platform/Paths.h"
#include "platform/Program.h"
#include "platform/Services.h"

namespace kr::platform {
namespace {

constexpr PulseConnection::Seconds kPatience{1};
constexpr const char* kNoAnswer = "the sound server does not answer";

std::string applicationName() {
  return std::string(paths::withoutExtension(paths::lastComponent(services().program->bundlePath())));
}

std::string property(const PulseLibrary& pulse, const pa_sink_info& sink, const char* key) {
  const char* value = pulse.proplist_gets(sink.proplist, key);
  return value != nullptr ? value : "";
}

std::string text(const char* characters) {
  return characters != nullptr ? characters : "";
}

}  // namespace

// What a callback fills in. It lives until the operation has ended or was cancelled.
struct PulseConnection::Query {
  explicit Query(PulseConnection& asked) : connection(asked) {}

  PulseConnection& connection;
  bool done = false;
  std::string defaultSink;
  std::vector<PulseSink> sinks;

  static void takeServer(pa_context*, const pa_server_info* server, void* context) {
    Query& query = *static_cast<Query*>(context);
    if (server != nullptr) query.defaultSink = text(server->default_sink_name);
    query.finish();
  }

  // Called for every device, and once more at the end, or at once after an error.
  static void takeSink(pa_context*, const pa_sink_info* sink, int end, void* context) {
    Query& query = *static_cast<Query*>(context);
    if (end != 0 || sink == nullptr) return query.finish();
    const PulseLibrary& pulse = query.connection.pulse_;
    std::string maker = property(pulse, *sink, PA_PROP_DEVICE_VENDOR_NAME);
    if (maker.empty()) maker = text(sink->driver);
    query.sinks.push_back({sink->index, text(sink->name), text(sink->description), std::move(maker)});
  }

  void finish() {
    done = true;
    connection.announce();
  }
};

PulseConnection* PulseConnection::shared() noexcept {
  static PulseConnection* const connection = []() -> PulseConnection* {
    const PulseLibrary* pulse = PulseLibrary::get();
    if (pulse == nullptr) return nullptr;
    std::unique_ptr<PulseConnection> made(new PulseConnection(*pulse));
    return made->startLoop() ? made.release() : nullptr;
  }();
  return connection;
}

PulseConnection::PulseConnection(const PulseLibrary& pulse) : pulse_(pulse) {}

bool PulseConnection::startLoop() {
  loop_ = pulse_.threaded_mainloop_new();
  if (loop_ != nullptr && pulse_.threaded_mainloop_start(loop_) == 0) return true;
  log("*** no sound: the thread of the sound library does not start");
  return false;
}

// With the lock. Begins a connection; what comes of it is announced.
bool PulseConnection::connect() {
  givenUp_ = false;
  context_ = pulse_.context_new(pulse_.threaded_mainloop_get_api(loop_), applicationName().c_str());
  if (context_ == nullptr) return false;
  pulse_.context_set_state_callback(
      context_, [](pa_context*, void* self) { static_cast<PulseConnection*>(self)->announce(); }, this);
  return pulse_.context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) >= 0;
}

// With the lock.
void PulseConnection::drop() {
  if (context_ == nullptr) return;
  pulse_.context_set_state_callback(context_, nullptr, nullptr);
  pulse_.context_disconnect(context_);
  pulse_.context_unref(context_);
  context_ = nullptr;
}

// With the lock. Whoever plays again and again without a server hears of it once.
void PulseConnection::report(const std::string& problem) {
  if (problem != reported_) log("*** no sound: %@", problem);
  reported_ = problem;
}

std::string PulseConnection::problem() const {
  return pulse_.strerror(context_ != nullptr ? pulse_.context_errno(context_) : PA_ERR_INTERNAL);
}

bool PulseConnection::isReady(Seconds patience) {
  enum class State { lost, pending, ready };
  const auto state = [this] {
    if (context_ == nullptr) return State::lost;
    const pa_context_state_t now = pulse_.context_get_state(context_);
    if (now == PA_CONTEXT_READY) return State::ready;
    return PA_CONTEXT_IS_GOOD(now) ? State::pending : State::lost;
  };
  {
    const Lock lock(*this);
    if (state() == State::lost) {
      drop();
      if (!connect()) {
        report(problem());
        drop();
        return false;
      }
    }
    if (state() == State::ready) return true;
    if (givenUp_ && patience <= kPatience) return false;
  }
  const bool decided = waitUntil([&] { return state() != State::pending; }, patience);
  const Lock lock(*this);
  if (state() == State::ready) {
    reported_.clear();
    return true;
  }
  givenUp_ = true;
  report(decided ? problem() : kNoAnswer);
  return false;
}

void PulseConnection::announce() {
  const std::lock_guard lock(mutex_);
  ++announcements_;
  changed_.notify_all();
}

bool PulseConnection::waitUntil(const std::function<bool()>& condition, Seconds patience) {
  const auto deadline = std::chrono::steady_clock::now() +
                        std::chrono::duration_cast<std::chrono::steady_clock::duration>(patience);
  for (;;) {
    std::uint64_t seen = 0;
    {
      const std::lock_guard lock(mutex_);
      seen = announcements_;
    }
    {
      const Lock lock(*this);
      if (condition()) return true;
    }
    if (std::chrono::steady_clock::now() >= deadline) return false;
    std::unique_lock lock(mutex_);
    changed_.wait_until(lock, deadline, [&] { return announcements_ != seen; });
  }
}

bool PulseConnection::ask(Query& query, const std::function<pa_operation*(Query&)>& start) {
  if (!isReady(kPatience)) return false;
  pa_operation* operation = nullptr;
  {
    const Lock lock(*this);
    if (context_ != nullptr) operation = start(query);
  }
  if (operation == nullptr) return false;
  // A connection that is lost meanwhile ends its operations without a call.
  const auto ended = [&] {
    return query.done || context_ == nullptr || pulse_.context_get_state(context_) != PA_CONTEXT_READY;
  };
  const bool answered = waitUntil(ended, kPatience);
  const Lock lock(*this);
  pulse_.operation_cancel(operation);
  pulse_.operation_unref(operation);
  if (query.done) return true;
  if (!answered) report(kNoAnswer);
  // The next one who asks is to find out whether there is a server at all.
  drop();
  return false;
}

std::optional<PulseSink> PulseConnection::firstSink(const std::function<pa_operation*(Query&)>& start) {
  Query query(*this);
  if (!ask(query, start) || query.sinks.empty()) return std::nullopt;
  return query.sinks.front();
}

std::optional<PulseSink> PulseConnection::defaultSink() {
  Query server(*this);
  const bool answered = ask(server, [this](Query& query) {
    return pulse_.context_get_server_info(context_, Query::takeServer, &query);
  });
  if (!answered || server.defaultSink.empty()) return std::nullopt;
  return firstSink([&](Query& query) {
    return pulse_.context_get_sink_info_by_name(context_, server.defaultSink.c_str(), Query::takeSink,
                                                &query);
  });
}

std::optional<PulseSink> PulseConnection::sink(std::uint32_t index) {
  return firstSink([&](Query& query) {
    return pulse_.context_get_sink_info_by_index(context_, index, Query::takeSink, &query);
  });
}

std::vector<PulseSink> PulseConnection::sinks() {
  Query query(*this);
  const bool answered = ask(query, [this](Query& all) {
    return pulse_.context_get_sink_info_list(context_, Query::takeSink, &all);
  });
  return answered ? query.sinks : std::vector<PulseSink>{};
}

}  // namespace kr::platform
