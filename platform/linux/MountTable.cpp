#include "platform/linux/MountTable.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "platform/Paths.h"

namespace kr::platform {
namespace {

constexpr std::array<std::string_view, 12> kServed{"9p",     "afs",   "autofs", "ceph", "cifs", "coda",
                                                   "lustre", "ncpfs", "nfs",    "nfs4", "smb3", "virtiofs"};
constexpr std::string_view kByPrograms = "fuse";  // and "fuse.NAME", "fuseblk"

std::string_view nextWord(std::string_view& line) {
  const std::size_t end = std::min(line.find(' '), line.size());
  const std::string_view word = line.substr(0, end);
  line.remove_prefix(std::min(end + 1, line.size()));
  return word;
}

// Blanks and line breaks of a name stand as a backslash with three octal digits.
std::string unescaped(std::string_view text) {
  std::string result;
  for (std::size_t at = 0; at < text.size(); ++at) {
    unsigned byte = 0;
    const char* digits = text.data() + at + 1;
    if (text[at] == '\\' && at + 3 < text.size() &&
        std::from_chars(digits, digits + 3, byte, 8).ptr == digits + 3) {
      result += static_cast<char>(byte);
      at += 3;
    } else {
      result += text[at];
    }
  }
  return result;
}

// ID, parent's ID, device, root, place, options, any number of further ones, "-", type, source, options.
std::optional<Mount> parseLine(std::string_view line) {
  Mount mount;
  const std::string_view id = nextWord(line);
  if (id.empty() ||
      std::from_chars(id.data(), id.data() + id.size(), mount.id).ptr != id.data() + id.size()) {
    return std::nullopt;
  }
  for (int skipped = 0; skipped < 3; ++skipped) nextWord(line);
  mount.place = unescaped(nextWord(line));
  while (!line.empty() && nextWord(line) != "-") {
  }
  mount.type = unescaped(nextWord(line));
  if (mount.place.empty() || mount.type.empty()) return std::nullopt;
  return mount;
}

}  // namespace

std::vector<Mount> parseMountTable(std::string_view text) {
  std::vector<Mount> table;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    if (std::optional<Mount> mount = parseLine(text.substr(0, end))) table.push_back(std::move(*mount));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return table;
}

const Mount* mountWithID(const std::vector<Mount>& table, std::uint64_t id) {
  const auto found =
      std::find_if(table.begin(), table.end(), [id](const Mount& mount) { return mount.id == id; });
  return found != table.end() ? &*found : nullptr;
}

const Mount* mountOf(const std::vector<Mount>& table, std::string_view path) {
  const Mount* innermost = nullptr;
  for (const Mount& mount : table) {
    if (!paths::isSameOrInside(path, mount.place)) continue;
    // Of two at the same place, the later one hides the other.
    if (innermost == nullptr || mount.place.size() >= innermost->place.size()) innermost = &mount;
  }
  return innermost;
}

bool mayNotAnswer(std::string_view type) {
  return type.starts_with(kByPrograms) || std::find(kServed.begin(), kServed.end(), type) != kServed.end();
}

}  // namespace kr::platform
