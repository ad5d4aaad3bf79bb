// How the tool ends. Each kind of failure has an exit status and one line on standard error of its own.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Failure.h"

namespace kr::train {

// The numbers are an interface: docs/security.md lists them. 1 and what is above 125 is left to whoever
// starts the tool and to signals.
enum class Status {
  installed = 0,
  usage = 2,
  destinationRefused = 3,
  sourceRefused = 4,
  wrapperRefused = 5,
  destinationUnreachable = 6,
  sourceUnreadable = 7,
  sourceChanged = 8,
  specialFile = 9,
  noRoom = 10,
  copyFailed = 11,
  exchangeFailed = 12,
  wrapperFailed = 13,
  noMemory = 14,
  unsettled = 15,
};

// What the status means, as the beginning of its line.
[[nodiscard]] std::string_view meaning(Status status) noexcept;

// Why nothing was installed.
struct Refusal {
  Status status;
  std::string reason;
};

using Checked = std::optional<Refusal>;

// The kind of failure of a copy from `source` (a path).
[[nodiscard]] Status statusOfCopy(const platform::Failure& failure, const std::string& source) noexcept;

}  // namespace kr::train
