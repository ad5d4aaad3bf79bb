// The user defaults on the disk, in a folder of the test's own, and other programs that write them.
#pragma once

#include <gtest/gtest.h>

#include <string>

namespace kr::testing {

class DefaultsOnTheDisk : public ::testing::Test {
 protected:
  // GNUstep reads where the user defaults are while the program loads, so the program begins once more.
  static void SetUpTestSuite();
  static void TearDownTestSuite();

  // As the user does in a terminal. GNUstep tells changes of the disk apart by whole seconds, and does not
  // notice when nothing at all is left.
  static void write(const std::string& domain, const std::string& key, const std::string& value);
  static void remove(const std::string& domain, const std::string& key);
};

}  // namespace kr::testing
