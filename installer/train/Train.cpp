#include "installer/train/Train.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <new>

#include "installer/train/DestinationPath.h"
#include "installer/train/Items.h"
#include "installer/train/Way.h"
#include "platform/Paths.h"
#include "platform/posix/Files.h"
#include "platform/replace/Replacement.h"

namespace kr::train {
namespace {

using platform::replace::Entry;
using platform::replace::Identity;
using platform::replace::Stage;

class Installation {
 public:
  Installation(const Request& request, std::vector<std::string>& notes)
      : request_(request), notes_(notes), destination_(destinationPath(request.destination)) {}

  Checked run() {
    if (!destination_.refusal.empty()) {
      return Refusal{Status::destinationRefused, request_.destination + ": " + destination_.refusal};
    }
    if (Checked refused = openWay(destination_.folders, way_)) return refused;
    if (Checked refused = openSources()) return refused;
    if (Checked refused = checkPlace()) return refused;
    if (Checked refused = checkWrapper()) return refused;

    // From here on things change. What comes to light here was hidden from the checks above.
    if (way_.parent) {
      platform::replace::clearLeftovers(way_.parent.get());
      if (Checked refused = checkPlace()) return refused;
    }
    if (request_.wrapper) {
      if (Checked refused = way_.parent ? placeItems() : placeWrapper()) return refused;
    }
    return placeProduct();
  }

 private:
  Checked openSources() {
    if (Checked refused = openTree(request_.source, Status::sourceRefused, source_)) return refused;
    if (!request_.wrapper) {
      if (way_.parent) return std::nullopt;
      return Refusal{Status::destinationRefused, parentPath() + " does not exist"};
    }
    return openTree(*request_.wrapper, Status::wrapperRefused, wrapper_);
  }

  // Whether the product may take the place of what has its name, and neither of the two holds the other.
  Checked checkPlace() {
    existing_.reset();
    const int nearest = way_.parent ? way_.parent.get() : way_.above.get();
    if (isInside(nearest, source_.identity)) return refusedDestination("it lies inside the source");
    if (!way_.parent) return std::nullopt;
    Item item;
    if (Checked refused = look(product(), item)) return refused;
    if (!item.identity) return std::nullopt;
    if (!S_ISDIR(item.mode) && !S_ISREG(item.mode)) {
      return refusedDestination("what is there is a link or a special file");
    }
    if (item.isMountPoint) return refusedDestination("something is mounted there");
    if (isInside(source_.folder.get(), *item.identity)) {
      return Refusal{Status::sourceRefused, request_.source + ": it lies inside the destination"};
    }
    if (request_.wrapper && isInside(wrapper_.folder.get(), *item.identity)) {
      return refusedWrapper("it lies inside the destination");
    }
    existing_ = item.identity;
    return std::nullopt;
  }

  // Whether each of the wrapper's items may take the place of what has its name beside the product.
  Checked checkWrapper() {
    if (!request_.wrapper) return std::nullopt;
    const int nearest = way_.parent ? way_.parent.get() : way_.above.get();
    if (isInside(nearest, wrapper_.identity)) return refusedWrapper("the destination lies inside it");
    auto items = files::entries(wrapper_.folder.get());
    if (!items) return refusedWrapper("it cannot be listed");
    for (std::string& name : *items) {
      if (isViewSetting(name)) continue;
      if (name.front() == '.') return refusedWrapper(name + " is hidden");
      items_.push_back(std::move(name));
    }
    for (const std::string& name : items_) {
      if (Checked refused = checkItem(name)) return refused;
    }
    return std::nullopt;
  }

  Checked checkItem(const std::string& name) {
    const Entry place = beside(name);
    const auto refusedAsSystem = [&] {
      return refusedWrapper(place.path + " is the system's own, or holds what is");
    };
    if (way_.system.isKeptName(place.path)) return refusedAsSystem();
    if (!way_.parent) return std::nullopt;
    Item item;
    if (Checked refused = look(place, item)) return refused;
    if (!item.identity || isProduct(name, item)) return std::nullopt;
    if (way_.system.isKept(*item.identity)) return refusedAsSystem();
    if (item.isMountPoint) return refusedWrapper("something is mounted at " + place.path);
    for (const Tree* kept : {&source_, &wrapper_}) {
      if (isInside(kept->folder.get(), *item.identity)) {
        return refusedWrapper(kept->path + " would be deleted with " + place.path);
      }
    }
    return std::nullopt;
  }

  // How a file manager shows the wrapper, and under which name: of no use to a folder that has its own.
  static bool isViewSetting(std::string_view name) { return name == ".DS_Store" || name == ".localized"; }

  // Whether the wrapper's item is for the place of the product itself, perhaps by a name in other capitals.
  [[nodiscard]] bool isProduct(const std::string& name, const Item& item) const {
    return name == destination_.name || (existing_ && item.identity == existing_);
  }

  // The wrapper becomes the parent folder.
  Checked placeWrapper() {
    const Entry from{wrapper_.folder.get(), ".", wrapper_.path};
    const Entry to{way_.above.get(), destination_.folders.back(), parentPath()};
    if (Checked refused = place(from, to, std::nullopt, true)) return refused;
    if (Checked refused = openWay(destination_.folders, way_)) return refused;
    if (!way_.parent) return Refusal{Status::wrapperFailed, parentPath() + " has gone"};
    return checkPlace();
  }

  // The product itself may be among the items: the source is the one that counts.
  Checked placeItems() {
    for (const std::string& name : items_) {
      Item item;
      if (Checked refused = look(beside(name), item)) return refused;
      if (isProduct(name, item)) continue;
      const Entry from{wrapper_.folder.get(), name, paths::joined(wrapper_.path, name)};
      if (Checked refused = place(from, beside(name), item.identity, true)) return refused;
    }
    return std::nullopt;
  }

  Checked placeProduct() {
    return place({source_.folder.get(), ".", source_.path}, product(), existing_, false);
  }

  Checked place(const Entry& from, const Entry& to, const std::optional<Identity>& existing, bool isItem) {
    const auto [failed, left] = platform::replace::replaceEntry(from, to, existing);
    if (left) notes_.push_back("the old " + to.path + " is left over: " + left->text());
    if (!failed) return std::nullopt;
    const auto& [stage, failure] = *failed;
    if (isItem) return Refusal{Status::wrapperFailed, failure.text()};
    const Status status =
        stage == Stage::exchange ? Status::exchangeFailed : statusOfCopy(failure, from.path);
    return Refusal{status, failure.text()};
  }

  [[nodiscard]] std::string parentPath() const { return std::string(paths::parent(request_.destination)); }
  [[nodiscard]] Entry beside(const std::string& name) const {
    return {way_.parent.get(), name, paths::joined(parentPath(), name)};
  }
  [[nodiscard]] Entry product() const { return beside(destination_.name); }

  [[nodiscard]] Refusal refusedDestination(const std::string& why) const {
    return {Status::destinationRefused, request_.destination + ": " + why};
  }
  [[nodiscard]] Refusal refusedWrapper(const std::string& why) const {
    return {Status::wrapperRefused, wrapper_.path + ": " + why};
  }

  const Request& request_;
  std::vector<std::string>& notes_;
  DestinationPath destination_;
  Way way_;
  Tree source_;
  Tree wrapper_;                    // when one was asked for
  std::vector<std::string> items_;  // of the wrapper, without view settings
  std::optional<Identity> existing_;
};

}  // namespace

Checked install(const Request& request, std::vector<std::string>& notes) {
  try {
    return Installation(request, notes).run();
  } catch (const std::bad_alloc&) {
    return Refusal{Status::noMemory, {}};
  }
}

}  // namespace kr::train
