// The privileged copy: puts a product in its place with the rights of root, for a caller whose word is not
// enough. Whatever is no plain product destination is refused before anything is touched.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "installer/train/Status.h"

namespace kr::train {

struct Request {
  std::string source;                  // the product, a folder
  std::string destination;             // the full path that it will have
  std::optional<std::string> wrapper;  // a folder with items that go beside it
};

// Places the wrapper's items, then the product, each instead of what has its name. Where the parent folder of
// the destination does not exist, the wrapper becomes it. None when all is in place. The old product is then
// deleted; one that could not be is named in `notes`, one line each, like old items of the wrapper. After a
// failure the old product is where it was, and wrapper items placed so far stay. All copies belong to root
// where this process is root's. Only one thread may call it. Blocks.
[[nodiscard]] Checked install(const Request& request, std::vector<std::string>& notes);

}  // namespace kr::train
