// A tree on the disk as text to compare: one line for every item, with all that a copy must keep. Written
// without any part of the copy engine.
//
//   const FileTree before = fileTree(source);
//   EXPECT_EQ(fileTree(copy), before);
#pragma once

#include <map>
#include <string>

namespace kr::testing {

// By path below the root; the root is "". Kind, mode, owner, size, modification time to the nanosecond, link
// target, a digest of the contents, extended attributes with values, and for a file with several names the
// first of them in the tree.
using FileTree = std::map<std::string, std::string>;

[[nodiscard]] FileTree fileTree(const std::string& root);

// Sets an extended attribute; false where the file system has none of that kind.
bool setAttribute(const std::string& path, const std::string& name, const std::string& value);

// Sets both times of an item, of a link itself.
void setTimes(const std::string& path, long seconds, long nanoseconds);

// The value of an access list that grants a further user reading: what "system.posix_acl_access" and
// "system.posix_acl_default" hold.
[[nodiscard]] std::string accessListWithReader(unsigned user);

}  // namespace kr::testing
