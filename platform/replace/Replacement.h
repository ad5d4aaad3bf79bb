// Puts a copy in the place of what has its name, such that the name always stands for the old item or for the
// new one, each of them whole. The copy is built in a hidden folder beside the destination which nobody else
// may enter; it then changes names with the old item, in one step where the file system can, and the old one
// is deleted in there.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string_view>

#include "platform/replace/FileSystem.h"

namespace kr::platform::replace {

// Names of the hidden folders are this and sixteen hexadecimal digits.
inline constexpr std::string_view kPrefix = ".velmora-replace-";

// An item as the disk knows it.
struct Identity {
  dev_t volume = 0;
  ino_t number = 0;

  friend bool operator==(Identity, Identity) = default;
};

enum class Stage { copy, exchange };

struct Outcome {
  // What the replacement failed at. The old item, or nothing, then has the name as before.
  std::optional<std::pair<Stage, Failure>> failed;
  // After success: why the old item could not be deleted. It is hidden, and the next run tries again.
  std::optional<Failure> left;
};

// Replaces the destination by a copy of the source (as FileSystem.h copies). `existing` is the item that the
// caller has looked at and takes to be replaced, none where there is to be nothing; another one that has the
// name at the decisive moment stays, and is a failure.
[[nodiscard]] Outcome replaceEntry(const Entry& source, const Entry& destination,
                                   const std::optional<Identity>& existing);

// Clears away what killed replacements of the same user have left in an open folder; an item that one of
// them had moved aside gets its name back unless the name is taken. What is neither a copy of theirs nor the
// item that they were to replace stays, with the hidden folder.
void clearLeftovers(int folder);

}  // namespace kr::platform::replace
