#include "platform/linux/copy/TreeCopier.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <new>

#include "platform/Paths.h"

namespace kr::platform::copy {
namespace {

using posix::FileDescriptor;

constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
constexpr mode_t kNobodyElse = S_IRWXU;

// A folder may hold any number of items: so many are kept in memory at a time.
constexpr std::size_t kItemsAtATime = 2048;

}  // namespace

void FirstFailure::set(Failure failure) {
  const std::lock_guard lock(mutex_);
  if (!failure_) failure_ = std::move(failure);
  isThere_ = true;
}

// One after the other: the last folder of a deep tree would take the others with it, each inside the call of
// the one before.
TreeCopier::Folder::~Folder() {
  while (above && above.use_count() == 1) {
    std::atomic_thread_fence(std::memory_order_acquire);  // with whoever was the last to let go of it
    above = std::shared_ptr<Folder>(std::move(above->above));
  }
}

std::string TreeCopier::Folder::path() const {
  std::size_t size = 0;
  for (const Folder* at = this; at->above; at = at->above.get()) size += at->name.size() + 1;
  std::string path(size, '/');
  for (const Folder* at = this; at->above; at = at->above.get()) {
    size -= at->name.size() + 1;
    path.replace(size, at->name.size(), at->name);
  }
  return path;
}

TreeCopier::TreeCopier(std::string sourcePath, std::string destinationPath, FileDescriptor destination,
                       Rights rights)
    : sourcePath_(std::move(sourcePath)),
      destinationPath_(std::move(destinationPath)),
      root_(std::move(destination)),
      items_(root_.get(), rights) {}

std::optional<Failure> TreeCopier::copyFolder(FileDescriptor source) {
  walk(std::move(source));
  crew_.finish();
  return failure_.take();
}

std::optional<Failure> TreeCopier::copyItem(Kind kind, const Place& source, const std::string& name) {
  const PathOf noPath = [] { return std::string(); };
  if (const Outcome failed = items_.copy(kind, source, {root_.get(), name}, noPath, buffer(0))) {
    fail(*failed, {});
  }
  return failure_.take();
}

void TreeCopier::walk(FileDescriptor source) {
  FileDescriptor destination(::fcntl(root_.get(), F_DUPFD_CLOEXEC, 0));
  if (!destination) return fail(problem("open", Side::destination), {});
  enter(std::move(source), std::move(destination), std::make_shared<Folder>(nullptr, std::string()));
  while (!levels_.empty() && !failure_.isThere()) {
    if (levels_.back().folders.empty()) {
      leave();
    } else {
      enterChild(levels_.back().folders.pop());
    }
  }
}

void TreeCopier::enterChild(const std::string& name) {
  const auto folder = std::make_shared<Folder>(levels_.back().folder, name);
  FileDescriptor source(::openat(sources_.folder(), name.c_str(), kFolderFlags));
  if (!source) return fail(problem("open"), folder->path());
  if (::mkdirat(destinations_.folder(), name.c_str(), kNobodyElse) != 0) {
    return fail(problem("create folder", Side::destination), folder->path());
  }
  FileDescriptor destination(::openat(destinations_.folder(), name.c_str(), kFolderFlags));
  if (!destination) return fail(problem("open", Side::destination), folder->path());
  enter(std::move(source), std::move(destination), folder);
}

void TreeCopier::enter(FileDescriptor source, FileDescriptor destination,
                       const std::shared_ptr<Folder>& folder) {
  if (::fstat(source.get(), &folder->attributes.status) != 0) return fail(problem("look at"), folder->path());
  if (Outcome failed = readExtendedAttributes(source.get(), folder->attributes)) {
    return fail(*failed, folder->path());
  }
  items_.adjust(folder->attributes);
  if (!sources_.enter(std::move(source))) return fail(problem("look at"), folder->path());
  if (!destinations_.enter(std::move(destination))) {
    return fail(problem("look at", Side::destination), folder->path());
  }
  FolderListing listing;
  FolderReader reader(sources_.folder());
  while (!reader.isAtEnd() && !failure_.isThere()) {
    if (Outcome failed = reader.read(listing, kItemsAtATime)) return fail(*failed, folder->path());
    if (!listing.items.empty()) addItems(folder, std::move(listing.items));
  }
  levels_.push_back({folder, std::move(listing.folders)});
}

// A folder gets its attributes when everything is in it: a read-only one would take nothing more, and each
// entry would move its times. What is in the folders below it no longer matters then.
void TreeCopier::leave() {
  const std::shared_ptr<Folder> folder = std::move(levels_.back().folder);
  levels_.pop_back();
  SharedFolder source;
  if (!sources_.leave(source)) return fail(problem("return from"), folder->path());
  if (!destinations_.leave(folder->destination)) {
    return fail(problem("return from", Side::destination), folder->path());
  }
  finishOne(*folder);
}

void TreeCopier::addItems(const std::shared_ptr<Folder>& folder, std::vector<Item> items) {
  const std::size_t count = items.size();
  folder->unfinished += count;
  const auto batch = std::make_shared<const Batch>(
      Batch{folder, sources_.shared(), destinations_.shared(), std::move(items)});
  crew_.add(count, [this, batch](std::size_t index, int worker) { copyOne(*batch, index, worker); });
}

void TreeCopier::copyOne(const Batch& batch, std::size_t index, int worker) {
  if (failure_.isThere()) return;
  const Item& item = batch.items[index];
  try {
    const PathOf above = [&] { return batch.folder->path(); };
    const Outcome failed = items_.copy(item.kind, {batch.source->get(), item.name},
                                       {batch.destination->get(), item.name}, above, buffer(worker));
    if (failed) return fail(*failed, batch.folder->path() + item.name);
  } catch (const std::bad_alloc&) {
    return fail({"copy", ENOMEM}, {});
  }
  finishOne(*batch.folder);
}

void TreeCopier::finishOne(Folder& folder) {
  if (--folder.unfinished > 0) return;
  const Outcome failed = applyAttributes(folder.destination->get(), folder.attributes, items_.creator());
  folder.destination.reset();
  if (failed) fail(*failed, folder.path());
}

void TreeCopier::fail(const Problem& problem, const std::string& path) {
  const std::string full = paths::joined(problem.side == Side::source ? sourcePath_ : destinationPath_, path);
  failure_.set({problem.step,
                std::string(paths::withoutTrailingSlashes(full)),
                {problem.error, std::generic_category()}});
}

Buffer& TreeCopier::buffer(int worker) {
  Buffer& own = buffers_[static_cast<std::size_t>(worker)];
  if (own.empty()) own.resize(kBufferSize);
  return own;
}

}  // namespace kr::platform::copy
