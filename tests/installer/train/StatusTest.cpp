#include "installer/train/Status.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <set>

namespace kr::train {
namespace {

TEST(TrainStatus, EachHasALineOfItsOwn) {
  std::set<std::string_view> texts;
  for (const int status : {0, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}) {
    const std::string_view text = meaning(static_cast<Status>(status));
    EXPECT_FALSE(text.empty()) << status;
    EXPECT_TRUE(texts.insert(text).second) << text;
  }
}

struct Failed {
  const char* path;
  int error;
  Status status;
};

class StatusOfACopy : public ::testing::TestWithParam<Failed> {};

TEST_P(StatusOfACopy, TellsTheSidesAndTheReasons) {
  const auto& [path, error, status] = GetParam();
  EXPECT_EQ(statusOfCopy({"copy", path, {error, std::generic_category()}}, "/from/P.app"), status);
}

INSTANTIATE_TEST_SUITE_P(Failures, StatusOfACopy,
                         ::testing::Values(Failed{"/from/P.app/f", EACCES, Status::sourceUnreadable},
                                           Failed{"/from/P.app", EIO, Status::sourceUnreadable},
                                           Failed{"/from/P.app/f", ESTALE, Status::sourceChanged},
                                           Failed{"/from/P.app/f", ENOENT, Status::sourceChanged},
                                           Failed{"/from/P.app/f", ELOOP, Status::sourceChanged},
                                           Failed{"/from/P.app/f", ENOTDIR, Status::sourceChanged},
                                           Failed{"/from/P.app/f", ENOTSUP, Status::specialFile},
                                           Failed{"/to/P.app/f", ENOSPC, Status::noRoom},
                                           Failed{"/to/P.app/f", EDQUOT, Status::noRoom},
                                           Failed{"/to/P.app/f", EFBIG, Status::noRoom},
                                           Failed{"/to/P.app/f", ENOMEM, Status::noMemory},
                                           Failed{"/to/P.app/f", EIO, Status::copyFailed},
                                           Failed{"/to/P.app/f", ENOENT, Status::copyFailed},
                                           Failed{"/from/P.apple/f", EIO, Status::copyFailed}));

}  // namespace
}  // namespace kr::train
