#include "platform/linux/copy/TreeCopier.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/Paths.h"

namespace kr::platform::copy {
namespace {

using posix::FileDescriptor;

constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
constexpr mode_t kNobodyElse = S_IRWXU;

// The first failure of several threads.
class FirstFailure {
 public:
  [[nodiscard]] bool isThere() const noexcept { return isThere_.load(std::memory_order_relaxed); }

  void set(Failure failure) {
    const std::lock_guard lock(mutex_);
    if (!failure_) failure_ = std::move(failure);
    isThere_ = true;
  }

  [[nodiscard]] std::optional<Failure> take() { return std::move(failure_); }

 private:
  std::atomic<bool> isThere_ = false;
  std::mutex mutex_;
  std::optional<Failure> failure_;
};

}  // namespace

TreeCopier::TreeCopier(std::string sourcePath, std::string destinationPath, FileDescriptor destination)
    : sourcePath_(std::move(sourcePath)),
      destinationPath_(std::move(destinationPath)),
      root_(std::move(destination)),
      items_(root_.get()) {}

std::optional<Failure> TreeCopier::copyFolder(FileDescriptor source) {
  FileDescriptor destination(::fcntl(root_.get(), F_DUPFD_CLOEXEC, 0));
  if (!destination) return failure(problem("open", Side::destination));
  if (auto failed = enter(std::move(source), std::move(destination), 0)) return failed;
  while (!levels_.empty()) {
    if (!levels_.back().folders.empty()) {
      const std::string next = std::move(levels_.back().folders.back());
      levels_.back().folders.pop_back();
      if (auto failed = enterChild(next)) return failed;
    } else if (auto failed = leave()) {
      return failed;
    }
  }
  return std::nullopt;
}

std::optional<Failure> TreeCopier::copyItem(Kind kind, const Place& source, const std::string& name) {
  if (const Outcome failed = items_.copy(kind, source, {root_.get(), name}, path_, buffer(0))) {
    return failure(*failed);
  }
  return std::nullopt;
}

std::optional<Failure> TreeCopier::enterChild(const std::string& name) {
  const std::size_t pathSize = path_.size();
  path_ += name + "/";
  FileDescriptor source(::openat(sources_.folder(), name.c_str(), kFolderFlags));
  if (!source) return failure(problem("open"));
  if (::mkdirat(destinations_.folder(), name.c_str(), kNobodyElse) != 0) {
    return failure(problem("create folder", Side::destination));
  }
  FileDescriptor destination(::openat(destinations_.folder(), name.c_str(), kFolderFlags));
  if (!destination) return failure(problem("open", Side::destination));
  return enter(std::move(source), std::move(destination), pathSize);
}

std::optional<Failure> TreeCopier::enter(FileDescriptor source, FileDescriptor destination,
                                         std::size_t pathSize) {
  Level level{pathSize, {}, {}};
  if (::fstat(source.get(), &level.attributes.status) != 0) return failure(problem("look at"));
  if (Outcome failed = readExtendedAttributes(source.get(), level.attributes)) return failure(*failed);
  FolderListing listing;
  if (Outcome failed = listFolder(source.get(), listing)) return failure(*failed);
  level.folders = std::move(listing.folders);
  if (!sources_.enter(std::move(source))) return failure(problem("look at"));
  if (!destinations_.enter(std::move(destination))) return failure(problem("look at", Side::destination));
  levels_.push_back(std::move(level));
  return copyItems(listing.items);
}

std::optional<Failure> TreeCopier::copyItems(const std::vector<Item>& items) {
  FirstFailure first;
  crew_.run(items.size(), [&](std::size_t index, int worker) {
    if (first.isThere()) return;
    const Item& item = items[index];
    const Outcome failed = items_.copy(item.kind, {sources_.folder(), item.name},
                                       {destinations_.folder(), item.name}, path_, buffer(worker));
    if (failed) first.set(failure(*failed, item.name));
  });
  return first.take();
}

// A folder gets its attributes when everything is in it: a read-only one would take nothing more, and each
// entry would move its times.
std::optional<Failure> TreeCopier::leave() {
  FileDescriptor source;
  FileDescriptor destination;
  if (!sources_.leave(source)) return failure(problem("return from"));
  if (!destinations_.leave(destination)) return failure(problem("return from", Side::destination));
  if (Outcome failed = applyAttributes(destination.get(), levels_.back().attributes, items_.creator())) {
    return failure(*failed);
  }
  path_.resize(levels_.back().pathSize);
  levels_.pop_back();
  return std::nullopt;
}

Failure TreeCopier::failure(const Problem& problem, const std::string& name) const {
  std::string full =
      paths::joined(problem.side == Side::source ? sourcePath_ : destinationPath_, path_ + name);
  while (full.size() > 1 && full.back() == '/') full.pop_back();
  return {problem.step, full, {problem.error, std::generic_category()}};
}

Buffer& TreeCopier::buffer(int worker) {
  Buffer& own = buffers_[static_cast<std::size_t>(worker)];
  if (own.empty()) own.resize(kBufferSize);
  return own;
}

}  // namespace kr::platform::copy
