// An installation that would destroy something is refused also when the questions that show it fail.
#include <errno.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <ostream>

#include "installer/InstallApplication.h"
#include "platform/Services.h"
#include "platform/SystemServices.h"
#include "platform/testing/FixedDesktop.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/FaultInjection.h"
#include "tests/support/FileTree.h"
#include "tests/support/ScratchFolder.h"

namespace kr::testing {
namespace {

// Paths below the scratch folder.
struct Hazard {
  const char* name;
  const char* source;
  const char* destination;
  const char* wrapper = nullptr;
  const char* program = "disk/VelmoraInstaller.app";
};

void PrintTo(const Hazard& hazard, std::ostream* out) {
  *out << hazard.name;
}

class HazardWithAFault : public ::testing::TestWithParam<Hazard> {
 protected:
  HazardWithAFault() {
    ::setenv("XDG_DATA_HOME", scratch_.folder("data").c_str(), 1);
    for (const char* product : {"disk/P.app", "Applications/P.app", "Applications/Tools/P.app",
                                "Applications/P.app/Contents/P.app"}) {
      scratch_.file(std::string(product) + "/Contents/file");
    }
    for (const char* wrapper : {"disk/Wrapper", "Applications/P.app/Wrapper", "Applications/Tools/Wrapper"}) {
      scratch_.file(std::string(wrapper) + "/Tools/file");
    }
    scratch_.file("Applications/Data/file");
    EXPECT_EQ(::symlink((scratch_ / "Applications/Data").c_str(),
                        scratch_.folder("disk/Linking").append("/Data").c_str()),
              0);
    static_cast<void>(platform::services());
  }

  int install() {
    const Hazard& hazard = GetParam();
    platform::testing::FixedProgram program;
    program.bundle = scratch_ / hazard.program;
    platform::testing::RecordingApplications applications;
    platform::testing::RecordingLog log;
    platform::Services services = platform::services();
    services.log = &log;
    services.applications = &applications;
    services.program = &program;
    const platform::ScopedServices scope(services);
    const auto wrapper = hazard.wrapper ? std::optional(scratch_ / hazard.wrapper) : std::nullopt;
    return InstallApplication(scratch_ / hazard.source, scratch_ / hazard.destination, wrapper);
  }

  ScratchFolder scratch_;
};

TEST_P(HazardWithAFault, IsRefused) {
  const FileTree before = fileTree(scratch_.path());
  for (const int error : {EIO, EACCES, EMFILE, EINTR, ENOMEM}) {
    std::size_t at = 0;  // the first run has none
    for (;; ++at) {
      const FaultRun run = runWithFault([this] { return install(); }, at, Fault::error(error));
      SCOPED_TRACE(std::to_string(error) + " at " + std::to_string(at) + ": " + run.call);
      ASSERT_EQ(run.traced.status, W_EXITCODE(kCopyFailed, 0));
      ASSERT_EQ(fileTree(scratch_.path()), before);
      if (at > 0 && run.hits == 0) break;
    }
    EXPECT_GT(at, 10U);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Hazards, HazardWithAFault,
    ::testing::Values(
        Hazard{"SourceIsDestination", "Applications/P.app", "Applications/P.app"},
        Hazard{"SourceInsideDestination", "Applications/P.app/Contents/P.app", "Applications/P.app"},
        Hazard{"DestinationInsideSource", "disk/P.app", "disk/P.app/Contents/P.app"},
        Hazard{"WrapperInsideDestination", "disk/P.app", "Applications/P.app", "Applications/P.app/Wrapper"},
        Hazard{"WrapperIntoItself", "disk/P.app", "disk/Wrapper/Tools/P.app", "disk/Wrapper"},
        Hazard{"EntryTakesSource", "Applications/Tools/P.app", "Applications/P.app", "disk/Wrapper"},
        Hazard{"EntryTakesWrapper", "disk/P.app", "Applications/P.app", "Applications/Tools/Wrapper"},
        Hazard{"EntryTakesProgram", "disk/P.app", "Applications/P.app", "disk/Wrapper",
               "Applications/Tools/P.app"},
        Hazard{"EntryLinksToItem", "disk/P.app", "Applications/P.app", "disk/Linking"}),
    [](const auto& hazard) { return std::string(hazard.param.name); });

}  // namespace
}  // namespace kr::testing
