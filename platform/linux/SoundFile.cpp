#include "platform/linux/SoundFile.h"

#include <sndfile.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

#include "platform/Log.h"
#include "platform/linux/SharedLibrary.h"

namespace kr::platform {
namespace {

// What sound servers take; a file that says more is damaged.
constexpr int kMostChannels = 32;
constexpr int kMostFramesPerSecond = 384'000;

constexpr std::array<std::string_view, 12> kExtensions{"wav", "aiff", "aif", "aifc", "au",  "snd",
                                                       "mp3", "flac", "ogg", "oga",  "caf", "w64"};

struct Library {
  static const Library* get() noexcept {
    static const Library* const functions = []() -> const Library* {
      const auto* const loaded = new Library;
      if (loaded->library.isComplete()) return loaded;
      log("*** no sound: %@", loaded->library.problem());
      return nullptr;
    }();
    return functions;
  }

  SharedLibrary library{"libsndfile.so.1"};
// What is declared has the name as it stands. NOLINTNEXTLINE(bugprone-macro-parentheses)
#define KR_SNDFILE(name) decltype(&::sf_##name) name = library.function<decltype(::sf_##name)>("sf_" #name)
  KR_SNDFILE(close);
  KR_SNDFILE(open_virtual);
  KR_SNDFILE(read_float);
  KR_SNDFILE(seek);
  KR_SNDFILE(strerror);
#undef KR_SNDFILE
};

// A file that lies in memory.
struct Memory {
  std::span<const std::byte> bytes;
  sf_count_t place = 0;

  [[nodiscard]] sf_count_t size() const { return static_cast<sf_count_t>(bytes.size()); }

  static sf_count_t length(void* context) { return static_cast<Memory*>(context)->size(); }
  static sf_count_t tell(void* context) { return static_cast<Memory*>(context)->place; }
  static sf_count_t write(const void*, sf_count_t, void*) { return 0; }

  static sf_count_t seek(sf_count_t offset, int from, void* context) {
    Memory& memory = *static_cast<Memory*>(context);
    const sf_count_t base = from == SEEK_SET ? 0 : from == SEEK_CUR ? memory.place : memory.size();
    if (offset < -base || offset > memory.size() - base) return -1;
    memory.place = base + offset;
    return memory.place;
  }

  static sf_count_t read(void* target, sf_count_t count, void* context) {
    Memory& memory = *static_cast<Memory*>(context);
    const sf_count_t taken = std::clamp<sf_count_t>(count, 0, memory.size() - memory.place);
    if (taken > 0) std::memcpy(target, memory.bytes.data() + memory.place, static_cast<std::size_t>(taken));
    memory.place += taken;
    return taken;
  }
};

class DecodedFile final : public SoundFile {
 public:
  DecodedFile(const Library& library, std::span<const std::byte> bytes) : library_(library), memory_{bytes} {
    SF_VIRTUAL_IO access{Memory::length, Memory::seek, Memory::read, Memory::write, Memory::tell};
    file_ = library_.open_virtual(&access, SFM_READ, &information_, &memory_);
  }
  ~DecodedFile() override {
    if (file_ != nullptr) library_.close(file_);
  }
  DecodedFile(const DecodedFile&) = delete;
  DecodedFile& operator=(const DecodedFile&) = delete;

  // Why nothing can be read; the empty text when something can.
  [[nodiscard]] std::string problem() const {
    if (file_ == nullptr) return library_.strerror(nullptr);
    if (information_.channels < 1 || information_.channels > kMostChannels) return "too many channels";
    if (information_.samplerate < 1 || information_.samplerate > kMostFramesPerSecond) return "too fast";
    return {};
  }

  std::uint32_t framesPerSecond() const override {
    return static_cast<std::uint32_t>(information_.samplerate);
  }
  std::uint8_t channels() const override { return static_cast<std::uint8_t>(information_.channels); }
  double duration() const override {
    return static_cast<double>(information_.frames) / information_.samplerate;
  }

  std::size_t read(std::span<float> samples) noexcept override {
    const std::size_t whole = samples.size() - samples.size() % channels();
    const sf_count_t count = library_.read_float(file_, samples.data(), static_cast<sf_count_t>(whole));
    return static_cast<std::size_t>(std::max<sf_count_t>(count, 0));
  }

  double position() noexcept override {
    const sf_count_t frame = library_.seek(file_, 0, SEEK_CUR);
    return static_cast<double>(std::max<sf_count_t>(frame, 0)) / information_.samplerate;
  }

  void setPosition(double seconds) noexcept override {
    if (!(seconds >= 0) || seconds > duration()) return;
    library_.seek(file_, static_cast<sf_count_t>(seconds * information_.samplerate), SEEK_SET);
  }

 private:
  const Library& library_;
  Memory memory_;
  SF_INFO information_{};
  SNDFILE* file_ = nullptr;
};

}  // namespace

std::span<const std::string_view> SoundFile::extensions() noexcept {
  return kExtensions;
}

std::unique_ptr<SoundFile> SoundFile::open(std::span<const std::byte> bytes) noexcept {
  const Library* library = Library::get();
  if (library == nullptr) return nullptr;
  auto file = std::make_unique<DecodedFile>(*library, bytes);
  const std::string problem = file->problem();
  if (problem.empty()) return file;
  log("*** could not read a sound: %@", problem);
  return nullptr;
}

}  // namespace kr::platform
