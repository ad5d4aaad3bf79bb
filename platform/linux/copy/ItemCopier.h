// Copies single files and links from one open folder into another. Any thread; each with a buffer of its own.
#pragma once

#include <functional>
#include <string>

#include "platform/linux/copy/Attributes.h"
#include "platform/linux/copy/Contents.h"
#include "platform/linux/copy/FolderListing.h"
#include "platform/linux/copy/HardLinks.h"
#include "platform/linux/copy/Problem.h"

namespace kr::platform::copy {

// A name in an open folder.
struct Place {
  int folder;
  const std::string& name;
};

// Tells the path of a folder. Hardly an item needs one.
using PathOf = std::function<std::string()>;

class ItemCopier {
 public:
  // `root` is the open folder of the new tree.
  explicit ItemCopier(int root, Rights rights = Rights::ofSource) : rights_(rights), links_(root) {}

  // What is there to copy of an item's attributes, under the rights that copies have.
  void adjust(Attributes& attributes) const {
    if (rights_ == Rights::ofSystem) giveToSystem(attributes);
  }

  [[nodiscard]] const Creator& creator() const noexcept { return creator_; }

  // Copies an item to a name that is not taken. `above` tells the path of the folder that gets it, below the
  // new tree's root and with a slash at the end unless it is the root. Only files and links can be copied, so
  // anything else is a failure (ENOTSUP), also when the item has become it since its kind was found out.
  [[nodiscard]] Outcome copy(Kind kind, const Place& source, const Place& destination, const PathOf& above,
                             Buffer& buffer);

 private:
  Outcome copyFile(const Place& source, const Place& destination, const PathOf& above, Buffer& buffer);
  Outcome copyLink(const Place& source, const Place& destination, const PathOf& above);

  Creator creator_ = Creator::current();
  Rights rights_;
  CloneSupport cloning_ = true;
  HardLinks links_;
};

}  // namespace kr::platform::copy
