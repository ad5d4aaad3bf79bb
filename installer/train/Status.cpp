#include "installer/train/Status.h"

#include <array>

#include "platform/Paths.h"

namespace kr::train {
namespace {

struct Meaning {
  Status status;
  std::string_view text;
};

constexpr std::array<Meaning, 15> kMeanings{{
    {Status::installed, "installed"},
    {Status::usage, "usage: train SOURCE DESTINATION [WRAPPER]"},
    {Status::destinationRefused, "destination refused"},
    {Status::sourceRefused, "source refused"},
    {Status::wrapperRefused, "wrapper refused"},
    {Status::destinationUnreachable, "destination cannot be reached"},
    {Status::sourceUnreadable, "source cannot be read"},
    {Status::sourceChanged, "source has changed while it was copied"},
    {Status::specialFile, "source holds what is no file, folder or link"},
    {Status::noRoom, "no room"},
    {Status::copyFailed, "copy failed"},
    {Status::exchangeFailed, "copy cannot take the destination's place"},
    {Status::wrapperFailed, "auxiliary item cannot be placed"},
    {Status::noMemory, "out of memory"},
    {Status::unsettled, "started without what every process needs"},
}};

}  // namespace

std::string_view meaning(Status status) noexcept {
  for (const Meaning& known : kMeanings) {
    if (known.status == status) return known.text;
  }
  return {};
}

Status statusOfCopy(const platform::Failure& failure, const std::string& source) noexcept {
  const auto is = [&](std::errc error) { return failure.error == error; };
  if (is(std::errc::no_space_on_device) || is(std::errc::file_too_large) || failure.error.value() == EDQUOT) {
    return Status::noRoom;
  }
  if (is(std::errc::not_enough_memory)) return Status::noMemory;
  if (!paths::isSameOrInside(failure.path, source)) return Status::copyFailed;
  // An item that was listed and is not there, or is of another kind, when its turn comes.
  if (failure.error.value() == ESTALE || is(std::errc::no_such_file_or_directory) ||
      is(std::errc::too_many_symbolic_link_levels) || is(std::errc::not_a_directory)) {
    return Status::sourceChanged;
  }
  if (is(std::errc::not_supported)) return Status::specialFile;
  return Status::sourceUnreadable;
}

}  // namespace kr::train
