// Runs the built tool on folders of the test's own, and looks at what it left.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "installer/train/Status.h"
#include "tests/support/FileTree.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/Tracer.h"

namespace kr::testing {

using train::Status;
using Lines = std::vector<std::string>;

class TrainTest : public ::testing::Test {
 protected:
  TrainTest();

  // A product with all that a copy has to keep; `version` is in each of its files.
  std::string product(const std::string& name, const std::string& version) const;

  // Runs the tool with these words; its exit status, or none where it was killed. What it wrote to standard
  // error is in `errors`. `prepare` runs in the new process before.
  std::optional<Status> run(const Lines& words, const std::function<void()>& prepare = {});

  // The same, with the tool's calls of these kinds watched; they alone are counted.
  std::optional<Status> runWatched(const Lines& words, const std::vector<long>& kinds,
                                   const std::function<Verdict(const WatchedCall&)>& decide,
                                   const std::function<void()>& prepare = {});

  // The same without waiting for the disk, which many runs in a row would do most of the time.
  std::optional<Status> runWithoutDisk(const Lines& words);

  // What a watched run answers to all calls that the test has nothing to do with.
  [[nodiscard]] static Verdict passWithoutDisk(const WatchedCall& call);

  // The path of the file that a watched call's first argument is a descriptor of.
  [[nodiscard]] static std::string openPath(const WatchedCall& call);

  // The product at the path as the tool installs it into an empty folder.
  FileTree installed(const std::string& source);

  // Names in the folder, in order.
  [[nodiscard]] static Lines entries(const std::string& folder);

  // Expects the tool to refuse, with one line, and to leave everything below the scratch folder as it was.
  void expectRefused(const Lines& words, Status status);

  ScratchFolder scratch_;
  std::string errors;
  bool watchesStart = false;       // also what the tool does before it has settled
  const std::string to_;           // where products are installed
  const std::string destination_;  // in there
};

}  // namespace kr::testing
