// What of the disk is the system's. Folders are known by what they are, not by how they are spelt: a volume
// can be mounted twice, and names need not tell capitals.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/replace/Replacement.h"
#include "platform/replace/SystemFolders.h"

namespace kr::train {

class SystemPlaces {
 public:
  SystemPlaces() = default;
  explicit SystemPlaces(std::span<const platform::replace::SystemFolder> folders);

  // To be called for each folder on a way, from the root down: takes in what of the system's is known by its
  // place in this one (the "*" of systemFolders()), which lies in `above`.
  void enter(const platform::replace::Identity& above, int folder, const std::string& path);

  // What this very folder is known as; none where it is not.
  [[nodiscard]] std::optional<platform::replace::Place> placeOf(
      const platform::replace::Identity& folder) const;

  // Whether what has the identity is one of the folders or holds one, so that they would be deleted with it.
  [[nodiscard]] bool isKept(const platform::replace::Identity& item) const;

  // The same for a name that nothing has, told by the path. Capitals do not count.
  [[nodiscard]] bool isKeptName(const std::string& path) const;

 private:
  struct Known {
    platform::replace::Identity identity;
    platform::replace::Place place;
  };
  struct Below {
    platform::replace::Identity above;  // of the "*"
    std::string name;                   // after it
    platform::replace::Place place;
  };

  void add(int folder, const std::string& name, platform::replace::Place place);

  std::vector<Known> known_;
  std::vector<Below> below_;
  std::vector<platform::replace::Identity> kept_;
  std::vector<std::string> paths_;
};

}  // namespace kr::train
