// Whatever goes wrong in an installation, at whichever of its system calls: the product is whole or absent,
// the old copy is kept, the source is untouched, nothing else is left, and answer and log say what has
// happened.
#include <errno.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

#include "tests/installer/system/InstallationScene.h"

namespace kr::testing {
namespace {

struct Sweep {
  const char* name;
  Furniture furniture;
  Fault fault;
  Threads threads = Threads::one;
};

void PrintTo(const Sweep& sweep, std::ostream* out) {
  *out << sweep.name;
}

class InstallationWithAFault : public ::testing::TestWithParam<Sweep> {};

// One installation per system call. With one thread each has the same calls, so each call is struck once.
TEST_P(InstallationWithAFault, AtAnySystemCallLeavesNothingHalf) {
  const Sweep& sweep = GetParam();
  const bool isRepeatable = sweep.threads == Threads::one;
  InstallationScene scene(sweep.furniture);
  const FaultRun sound = scene.installWithFault(0, sweep.fault, sweep.threads);
  ASSERT_EQ(sound.hits, 0U);
  ASSERT_GT(sound.traced.calls, 100U);

  std::size_t struck = 0;
  std::size_t failed = 0;   // installations
  std::size_t longer = 0;   // had more calls for it
  std::size_t threads = 0;  // of the struck installations
  for (;;) {
    const FaultRun run = scene.installWithFault(struck + 1, sweep.fault, sweep.threads);
    if (HasFailure()) FAIL() << struck << " calls before have been survived";
    if (run.hits == 0) break;
    ASSERT_EQ(run.hits, 1U);
    ++struck;
    threads = std::max(threads, run.traced.threads);
    if (run.traced.status != 0) ++failed;
    if (run.traced.calls > sound.traced.calls) ++longer;
  }

  // The fault was there each time: what has an effect has it.
  if (isRepeatable) EXPECT_EQ(struck, sound.countedCalls);
  EXPECT_GT(struck, sound.countedCalls * 9 / 10);
  EXPECT_EQ(threads, isRepeatable ? 1U : 2U);
  switch (sweep.fault.kind) {
    case Fault::Kind::kill:
      EXPECT_EQ(failed, struck);
      break;
    case Fault::Kind::error:
      EXPECT_GT(failed, struck / 4);
      EXPECT_LT(failed, struck) << "what may fail is not needed";
      break;
    case Fault::Kind::cutShort:
      EXPECT_EQ(failed, 0U);
      EXPECT_GT(longer, struck / 2) << "the rest was moved with further calls";
      break;
  }
}

const Furniture kNew{};
const Furniture kUpdate{.oldCopy = true};
const Furniture kSecondUpdate{.richProduct = false, .oldCopy = true, .trash = true};
const Furniture kLongName{.richProduct = false, .oldCopy = true, .product = std::string(251, 'n') + ".app"};
const Furniture kWrapper{.richProduct = false, .oldCopy = true, .wrapper = true};
const Furniture kFolder{.richProduct = false, .wrapper = true, .isFolderMissing = true};

INSTANTIATE_TEST_SUITE_P(
    Sweeps, InstallationWithAFault,
    ::testing::Values(Sweep{"NewNoSpace", kNew, Fault::error(ENOSPC)},                          //
                      Sweep{"NewDiskError", kNew, Fault::error(EIO)},                           //
                      Sweep{"NewDenied", kNew, Fault::error(EACCES)},                           //
                      Sweep{"NewNoDescriptor", kNew, Fault::error(EMFILE)},                     //
                      Sweep{"NewInterrupted", kNew, Fault::error(EINTR)},                       //
                      Sweep{"NewCutShort", kNew, Fault::cutShort()},                            //
                      Sweep{"NewKilled", kNew, Fault::kill()},                                  //
                      Sweep{"UpdateNoSpace", kUpdate, Fault::error(ENOSPC)},                    //
                      Sweep{"UpdateDiskError", kUpdate, Fault::error(EIO)},                     //
                      Sweep{"UpdateDenied", kUpdate, Fault::error(EACCES)},                     //
                      Sweep{"UpdateNoDescriptor", kUpdate, Fault::error(EMFILE)},               //
                      Sweep{"UpdateInterrupted", kUpdate, Fault::error(EINTR)},                 //
                      Sweep{"UpdateCutShort", kUpdate, Fault::cutShort()},                      //
                      Sweep{"UpdateKilled", kUpdate, Fault::kill()},                            //
                      Sweep{"SecondUpdateNoSpace", kSecondUpdate, Fault::error(ENOSPC)},        //
                      Sweep{"SecondUpdateKilled", kSecondUpdate, Fault::kill()},                //
                      Sweep{"LongNameNoSpace", kLongName, Fault::error(ENOSPC)},                //
                      Sweep{"LongNameInterrupted", kLongName, Fault::error(EINTR)},             //
                      Sweep{"LongNameCutShort", kLongName, Fault::cutShort()},                  //
                      Sweep{"LongNameKilled", kLongName, Fault::kill()},                        //
                      Sweep{"WrapperNoSpace", kWrapper, Fault::error(ENOSPC)},                  //
                      Sweep{"WrapperDenied", kWrapper, Fault::error(EACCES)},                   //
                      Sweep{"WrapperCutShort", kWrapper, Fault::cutShort()},                    //
                      Sweep{"WrapperKilled", kWrapper, Fault::kill()},                          //
                      Sweep{"FolderDiskError", kFolder, Fault::error(EIO)},                     //
                      Sweep{"FolderKilled", kFolder, Fault::kill()},                            //
                      Sweep{"TwoThreadsDiskError", kUpdate, Fault::error(EIO), Threads::any},   //
                      Sweep{"TwoThreadsInterrupted", kNew, Fault::error(EINTR), Threads::any},  //
                      Sweep{"TwoThreadsCutShort", kNew, Fault::cutShort(), Threads::any},       //
                      Sweep{"TwoThreadsKilled", kNew, Fault::kill(), Threads::any}),
    [](const auto& sweep) { return std::string(sweep.param.name); });

}  // namespace
}  // namespace kr::testing
