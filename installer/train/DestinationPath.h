// The text of a destination, before anything of the disk is looked at.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kr::train {

struct DestinationPath {
  std::vector<std::string> folders;  // from the root down to the parent folder
  std::string name;
  std::string refusal;  // why it is no plain product destination; empty when it is
};

// Takes the path apart. A plain product destination is a full path without empty, "." and ".." components
// and without hidden ones, at least one folder below the root, whose last component is a name and ".app", and
// no other component is: the inside of a product belongs to that product. Slashes at the end do not count.
[[nodiscard]] DestinationPath destinationPath(std::string_view path);

}  // namespace kr::train
