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
using platform::services;

constexpr std::string_view kProductNotCopied = "ERROR -- Could not copy myself to %@";
constexpr std::string_view kItemNotCopied = "ERROR -- Could not copy auxiliary item to %@";
constexpr std::string_view kWrapperNotCopied = "ERROR -- Could not copy wrapper to %@";
constexpr std::string_view kItemNotDeleted = "ERROR -- Could not delete %@";
constexpr std::string_view kNotTrashed = "ERROR -- Could not trash '%@'";
constexpr std::string_view kExistingNotTrashed = "ERROR -- Could not trash existing %@";

// The line that says what failed, and one with the reason.
void report(std::string_view line, const std::string& path, const std::string& reason) {
  log(line, path);
  log("%@", reason);
}

// Copies one item of the wrapper folder over what is in the parent folder under its name.
bool copyItem(const std::string& from, const std::string& to) {
  if (files::itemExists(to)) {
    if (const auto failure = services().files->removeTree(to)) report(kItemNotDeleted, to, failure->text());
  }
  if (const auto failure = services().files->copyTree(from, to)) {
    report(kItemNotCopied, to, failure->text());
    return false;
  }
  services().applications->noteFileSystemChanged(to);
  return true;
}

bool copyItems(const std::string& wrapper, const std::string& parent, const std::string& source) {
  const std::vector<std::string> names = files::entries(wrapper).value_or(std::vector<std::string>{});
  for (const std::string& name : names) {
    const std::string to = paths::joined(parent, name);
    if (files::itemExists(to) && (holds(to, wrapper) || holds(to, source))) {
      report(kItemNotCopied, to, "what is there holds the files to copy");
      return false;
    }
  }
  for (const std::string& name : names) {
    if (!copyItem(paths::joined(wrapper, name), paths::joined(parent, name))) return false;
  }
  return true;
}

bool copyWrapper(const std::string& wrapper, const std::string& parent, const std::string& source) {
  if (files::exists(parent)) return copyItems(wrapper, parent, source);
  if (const auto failure = services().files->copyTree(wrapper, parent)) {
    report(kWrapperNotCopied, parent, failure->text());
    return false;
  }
  services().applications->noteFileSystemChanged(parent);
  return true;
}

}  // namespace

int InstallApplication(const std::string& source, const std::string& destination,
                       const std::optional<std::string>& wrapper) {
  if (const auto hazard = hazardOfProduct(source, destination)) {
    report(kProductNotCopied, destination, *hazard);
    return kCopyFailed;
  }
  // The wrapper may hold the product itself: then it is copied as one of the items first, and again from the
  // source in the end. The copy from the source is the one that counts.
  if (wrapper && !copyWrapper(*wrapper, std::string(paths::parent(destination)), source)) return kCopyFailed;
  if (files::itemExists(destination)) {
    if (const auto failure = services().files->recycle(destination)) {
      log(kNotTrashed, destination);
      report(kExistingNotTrashed, destination, failure->text());
      return kExistingCopyNotTrashed;
    }
  }
  if (const auto failure = services().files->copyTree(source, destination)) {
    report(kProductNotCopied, destination, failure->text());
    return kCopyFailed;
  }
  services().applications->noteFileSystemChanged(destination);
  return kInstalled;
}

}  // namespace kr
