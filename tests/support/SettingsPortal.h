// The part of a desktop's portal that tells of its settings.
#pragma once

#include <atomic>
#include <optional>

#include "tests/support/BusObject.h"

namespace kr::testing {

class SettingsPortal {
 public:
  // Answers the colour scheme with this number; with none of it, it does not answer at all.
  SettingsPortal(const std::string& busAddress, std::optional<unsigned> scheme);

  // Sets the colour scheme and tells everybody.
  void choose(unsigned scheme);

  // Tells everybody that a setting is this now. Takes the value over where nobody holds it yet.
  void change(const char* space, const char* key, GVariant* value);

 private:
  std::atomic<int> scheme_;  // below zero: does not answer
  BusObject object_;
};

}  // namespace kr::testing
