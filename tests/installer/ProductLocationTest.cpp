#include "installer/ProductLocation.h"

#include <gtest/gtest.h>

#include "platform/Services.h"
#include "platform/testing/RecordingLog.h"

namespace kr {
namespace {

using Lines = std::vector<std::string>;

class ProductLocation : public ::testing::Test {
 protected:
  ProductLocation() : services_(platform::services()) {
    services_.log = &log_;
    scope_.emplace(services_);
  }

  platform::testing::RecordingLog log_;

 private:
  platform::Services services_;
  std::optional<platform::ScopedServices> scope_;
};

TEST_F(ProductLocation, TheInstallerMayLieAtAnyDepthOfTheProduct) {
  EXPECT_EQ(enclosingApplication("/opt/P.app/Contents/Resources/Installer.app"), "/opt/P.app");
  EXPECT_EQ(log_.lines(), (Lines{"shortened path = /opt/P.app/Contents", "shortened path = /opt/P.app"}));
}

TEST_F(ProductLocation, APathThatIsRightAtOnceIsNotShortened) {
  EXPECT_EQ(enclosingApplication("/opt/P.app/Installer.app"), "/opt/P.app");
  EXPECT_TRUE(log_.lines().empty());
}

TEST_F(ProductLocation, AnInstallerOutsideEveryApplicationHasNoProduct) {
  EXPECT_EQ(enclosingApplication("/a/b/Installer.app"), std::nullopt);
  EXPECT_EQ(log_.lines(), (Lines{"shortened path = /a", "shortened path = /"}));
}

TEST_F(ProductLocation, AnInstallerAtTheRootHasNoProduct) {
  EXPECT_EQ(enclosingApplication("/Installer.app"), std::nullopt);
  EXPECT_EQ(enclosingApplication("Installer.app"), std::nullopt);
  EXPECT_TRUE(log_.lines().empty());
}

TEST_F(ProductLocation, TheProductIsNamedAfterItsBundle) {
  EXPECT_EQ(productNameFromPath("/opt/My Product.app"), "My Product");
  EXPECT_EQ(productNameFromPath("/opt/Dotted.Name.app/"), "Dotted.Name");
  EXPECT_EQ(productNameFromPath(""), std::nullopt);
}

}  // namespace
}  // namespace kr
