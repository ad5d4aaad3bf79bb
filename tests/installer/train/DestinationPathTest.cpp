#include "installer/train/DestinationPath.h"

#include <gtest/gtest.h>

namespace kr::train {
namespace {

TEST(DestinationPath, IsTakenApart) {
  const DestinationPath destination = destinationPath("/opt/Velmora Tools/P 2.app");
  EXPECT_EQ(destination.refusal, "");
  EXPECT_EQ(destination.folders, (std::vector<std::string>{"opt", "Velmora Tools"}));
  EXPECT_EQ(destination.name, "P 2.app");
}

TEST(DestinationPath, SlashesAtTheEndDoNotCount) {
  const DestinationPath destination = destinationPath("/opt/P.app//");
  EXPECT_EQ(destination.refusal, "");
  EXPECT_EQ(destination.name, "P.app");
}

TEST(DestinationPath, BytesThatAreNoTextAreBytes) {
  EXPECT_EQ(destinationPath("/opt/\xFF\n.app").refusal, "");
}

struct Refused {
  const char* path;
  const char* why;
};

class DestinationThatIsNotPlain : public ::testing::TestWithParam<Refused> {};

TEST_P(DestinationThatIsNotPlain, IsRefused) {
  EXPECT_EQ(destinationPath(GetParam().path).refusal, GetParam().why) << GetParam().path;
}

INSTANTIATE_TEST_SUITE_P(
    Paths, DestinationThatIsNotPlain,
    ::testing::Values(
        Refused{"", "it is no full path"}, Refused{"P.app", "it is no full path"},
        Refused{"opt/P.app", "it is no full path"}, Refused{"./P.app", "it is no full path"},
        Refused{"~/P.app", "it is no full path"}, Refused{" /opt/P.app", "it is no full path"},
        Refused{"/", "it lies in the root folder"}, Refused{"//", "it lies in the root folder"},
        Refused{"/usr", "it lies in the root folder"}, Refused{"/P.app", "it lies in the root folder"},
        Refused{"//opt/P.app", "its path is not plain"}, Refused{"/opt//P.app", "its path is not plain"},
        Refused{"/opt/../P.app", "its path is not plain"}, Refused{"/../opt/P.app", "its path is not plain"},
        Refused{"/opt/./P.app", "its path is not plain"},
        Refused{"/opt/P.app/..", "it lies inside a product"}, Refused{"/opt/x/..", "its path is not plain"},
        Refused{"/opt/.", "its path is not plain"},
        Refused{"/opt/.hidden/P.app", "it lies in a hidden folder"},
        Refused{"/home/u/.ssh/P.app", "it lies in a hidden folder"},
        Refused{"/opt/.P.app", "its name is hidden"}, Refused{"/opt/Q.app/P.app", "it lies inside a product"},
        Refused{"/opt/Q.app/Contents/P.app", "it lies inside a product"},
        Refused{"/opt/P", "its name is not that of a product"},
        Refused{"/opt/.app", "its name is not that of a product"},
        Refused{"/opt/P.apps", "its name is not that of a product"},
        Refused{"/opt/P.APP", "its name is not that of a product"},
        Refused{"/opt/P.app ", "its name is not that of a product"},
        Refused{"/opt/Papp", "its name is not that of a product"}));

}  // namespace
}  // namespace kr::train
