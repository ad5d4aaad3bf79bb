#include "tests/support/SoundServer.h"

#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include "platform/posix/Files.h"
#include "tests/support/Eventually.h"

namespace kr::testing {
namespace {

constexpr double kLongestStart = 20;  // seconds
constexpr std::size_t kPerTenth = 4410;
constexpr double kSilence = 1e-4;

// What a program prints; empty when it fails.
std::string output(const std::string& command) {
  std::string text;
  std::FILE* pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) return text;
  char buffer[512];
  while (std::fgets(buffer, sizeof buffer, pipe) != nullptr) text += buffer;
  return ::pclose(pipe) == 0 ? text : std::string();
}

}  // namespace

SoundServer::SoundServer(const SoundServerParts& parts) : address_("unix:" + (folder_ / "socket")) {
  const auto set = [this](const char* name, const std::optional<std::string>& value) {
    environment_.push_back(std::make_unique<ScopedVariable>(name, value));
  };
  // The server's own files, and those of every client.
  set("PULSE_RUNTIME_PATH", folder_.folder("runtime"));
  set("PULSE_STATE_PATH", folder_.folder("state"));
  set("PULSE_COOKIE", folder_ / "cookie");
  set("PULSE_SINK", {});
  set("PULSE_SOURCE", {});
  set("PULSE_SERVER", address_);

  std::string script =
      "load-module module-native-protocol-unix auth-anonymous=1 socket=" + (folder_ / "socket") + "\n";
  for (const std::string& device : parts.devices) {
    script += "load-module module-null-sink sink_name=" + device +
              " channels=1 format=float32le rate=44100 sink_properties=device.description=" + device +
              "-device\n";
  }
  if (!parts.defaultDevice.empty()) script += "set-default-sink " + parts.defaultDevice + "\n";
  const std::string file = folder_.file("script.pa", script);
  // It says much that is of no interest here: that it is root, that there is no bus.
  server_ = Child({"pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1",
                   "--high-priority=no", "--realtime=no", "--disable-shm=yes",
                   "--log-target=file:" + (folder_ / "log"), "--file=" + file});
  const auto answers = [] { return !output("timeout 5 pactl info 2>/dev/null").empty(); };
  if (!eventually(answers, kLongestStart)) {
    throw std::runtime_error("pulseaudio did not start");
  }
}

std::string SoundServer::inputs() const {
  return output("timeout 5 pactl --server=" + address_ + " list sink-inputs 2>/dev/null");
}

void SoundServer::hang() {
  server_.signal(SIGSTOP);
}

void SoundServer::goOn() {
  server_.signal(SIGCONT);
}

SilentSoundServer::SilentSoundServer() : listener_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  const std::string path = folder_ / "silent";
  sockaddr_un place{};
  place.sun_family = AF_UNIX;
  std::strncpy(place.sun_path, path.c_str(), sizeof place.sun_path - 1);
  if (::bind(listener_, reinterpret_cast<const sockaddr*>(&place), sizeof place) != 0 ||
      ::listen(listener_, 16) != 0) {
    throw std::runtime_error("no socket");
  }
  variable_.emplace("PULSE_SERVER", "unix:" + path);
}

SilentSoundServer::~SilentSoundServer() {
  ::close(listener_);
}

NoSoundServer::NoSoundServer() : variable_("PULSE_SERVER", "unix:" + (folder_ / "nobody")) {}

Recording::Recording(const SoundServer& server, const std::string& device) : file_(folder_ / "recording") {
  recorder_ = Child({"parec", "--server=" + server.address(), "--device=" + device + ".monitor", "--raw",
                     "--format=float32le", "--rate=44100", "--channels=1", "--latency-msec=50", file_});
  const auto runs = [this] {
    std::error_code error;
    return std::filesystem::file_size(file_, error) > 0 && !error;
  };
  if (!eventually(runs, kLongestStart)) throw std::runtime_error("parec did not start");
}

// The root mean square of every tenth of a second.
std::vector<double> Recording::tenths() const {
  const std::string bytes = files::contents(file_, 1UL << 28).value_or("");
  std::vector<float> samples(bytes.size() / sizeof(float));
  std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(float));
  std::vector<double> result;
  for (std::size_t start = 0; start + kPerTenth <= samples.size(); start += kPerTenth) {
    double sum = 0;
    for (std::size_t index = start; index < start + kPerTenth; ++index) {
      sum += static_cast<double>(samples[index]) * samples[index];
    }
    result.push_back(std::sqrt(sum / kPerTenth));
  }
  return result;
}

double Recording::loudness() const {
  double loudest = 0;
  for (const double one : tenths()) loudest = std::max(loudest, one);
  return loudest;
}

double Recording::seconds() const {
  const std::vector<double> all = tenths();
  return static_cast<double>(
             std::count_if(all.begin(), all.end(), [](double one) { return one > kSilence; })) /
         10;
}

}  // namespace kr::testing
