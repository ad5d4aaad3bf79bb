// What is mounted where, out of the text of /proc/self/mountinfo. Any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kr::platform {

struct Mount {
  std::uint64_t id = 0;
  std::string place;  // where it is mounted
  std::string type;   // of its file system, such as "ext4"
};

// Lines that are none of the table are left out.
[[nodiscard]] std::vector<Mount> parseMountTable(std::string_view text);

// The mount with this ID; null where there is none.
[[nodiscard]] const Mount* mountWithID(const std::vector<Mount>& table, std::uint64_t id);

// The mount that an absolute path lies in by its text; null where there is none.
[[nodiscard]] const Mount* mountOf(const std::vector<Mount>& table, std::string_view path);

// Whether files of this type are somebody else's to answer for: a server's, or a program's.
[[nodiscard]] bool mayNotAnswer(std::string_view type);

}  // namespace kr::platform
