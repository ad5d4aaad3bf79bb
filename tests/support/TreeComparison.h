// Compares two trees with the tools of others: rsync, tar, find, getfattr and getfacl. Slower than a
// FileTree, but in nothing like this project's own.
#pragma once

#include <string>

namespace kr::testing {

// What differs between the items of two folders, and between the folders themselves; empty when they are the
// same: names, kinds, contents, holes, link targets, names of one file, modes, owners, modification times to
// the nanosecond, extended attributes and access lists. Fails the test where a tool is missing or fails.
[[nodiscard]] std::string differences(const std::string& one, const std::string& other);

}  // namespace kr::testing
