#include "installer/InstallApplication.h"

#include <vector>

#include "installer/CopyHazards.h"
#include "platform/Applications.h"
#include "platform/FileOperations.h"
#include "platform/Log.h"
#include "platform/Paths.h"
#include "platform/Services.h"
#include "platform/posix/Files.h"

namespace kr {
namespace {

using platform::Failure;

constexpr std::string_view kCouldNotDelete = "ERROR -- Could not delete %@";
constexpr std::string_view kCouldNotCopyItem = "ERROR -- Could not copy auxiliary item to %@";
constexpr std::string_view kCouldNotCopyWrapper = "ERROR -- Could not copy wrapper to %@";
constexpr std::string_view kCouldNotTrash = "ERROR -- Could not trash '%@'";
constexpr std::string_view kCouldNotTrashExisting = "ERROR -- Could not trash existing %@";
constexpr std::string_view kCouldNotCopyMyself = "ERROR -- Could not copy myself to %@";

// The line for the reader of the log, then the reason for whoever has to help.
void logFailure(std::string_view line, const std::string& path, const Failure& failure) {
  log(line, path);
  log("%@", failure.text());
}

void noteChanged(const std::string& path) {
  platform::services().applications->noteFileSystemChanged(path);
}

// An item in the way that cannot be deleted is only logged: the copy says whether it matters.
bool placeEntry(const std::string& item, const std::string& target) {
  platform::FileOperations& operations = *platform::services().files;
  if (files::itemExists(target)) {
    if (const auto failure = operations.removeTree(target)) logFailure(kCouldNotDelete, target, *failure);
  }
  if (const auto failure = operations.copyTree(item, target)) {
    logFailure(kCouldNotCopyItem, target, *failure);
    return false;
  }
  noteChanged(target);
  return true;
}

bool placeWrapper(const std::string& wrapper, const std::string& parent) {
  if (files::exists(parent)) {
    const auto entries = files::entries(wrapper);
    if (!entries) {
      logFailure(kCouldNotCopyItem, parent, {"the wrapper cannot be listed:", wrapper, {}});
      return false;
    }
    for (const std::string& entry : *entries) {
      if (!placeEntry(paths::joined(wrapper, entry), paths::joined(parent, entry))) return false;
    }
    return true;
  }
  if (const auto failure = platform::services().files->copyTree(wrapper, parent)) {
    logFailure(kCouldNotCopyWrapper, parent, *failure);
    return false;
  }
  noteChanged(parent);
  return true;
}

}  // namespace

int InstallApplication(const std::string& givenSource, const std::string& givenDestination,
                       const std::optional<std::string>& givenWrapper) {
  platform::FileOperations& operations = *platform::services().files;
  const std::string destination = std::string(paths::withoutTrailingSlashes(givenDestination));
  const std::string parent(paths::parent(destination));

  if (const auto hazard = hazardOfProduct(givenSource, destination)) {
    logFailure(kCouldNotCopyMyself, destination, *hazard);
    return kCopyFailed;
  }
  // Without links: a step must not pull away the link through which a later one would find its source.
  const std::string source = files::resolved(givenSource).value_or(givenSource);

  if (givenWrapper) {
    const std::string wrapper = files::resolved(*givenWrapper).value_or(*givenWrapper);
    if (const auto hazard = hazardOfWrapper(wrapper, source, destination)) {
      const bool hasFolder = files::exists(parent);
      logFailure(hasFolder ? kCouldNotCopyItem : kCouldNotCopyWrapper, hasFolder ? hazard->path : parent,
                 *hazard);
      return kCopyFailed;
    }
    if (!placeWrapper(wrapper, parent)) return kCopyFailed;
  }

  if (files::itemExists(destination)) {
    if (const auto failure = operations.recycle(destination)) {
      log(kCouldNotTrash, destination);
      logFailure(kCouldNotTrashExisting, destination, *failure);
      return kExistingCopyNotTrashed;
    }
  }
  if (const auto failure = operations.copyTree(source, destination)) {
    logFailure(kCouldNotCopyMyself, destination, *failure);
    return kCopyFailed;
  }
  noteChanged(destination);
  return kInstalled;
}

}  // namespace kr
