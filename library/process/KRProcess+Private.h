// What the parts of KRProcess share.
#pragma once

#include <mutex>
#include <optional>
#include <string>

#import "library/process/KRProcess.h"
#include "platform/ProcessTable.h"

namespace kr {

// Guards the cache and the current-process object. Held while an object is looked up and added, so that no
// two objects ever stand for one process.
[[nodiscard]] std::recursive_mutex& processClassLock();

// The process table in force.
[[nodiscard]] platform::ProcessTable& processTable();

// The process's name for the log; none where it cannot be had.
[[nodiscard]] std::optional<std::string> nameForLog(KRProcess* process);

}  // namespace kr
