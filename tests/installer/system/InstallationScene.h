// A small but rich product, what comes with it, an older copy and a Trash on the real disk, to be installed
// again and again over the system's own file operations, each time in a process of its own that may be made
// to fail.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/FaultInjection.h"
#include "tests/support/FileTree.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/SharedLines.h"

namespace kr::testing {

// What there is besides the product, and how much of a product it is.
struct Furniture {
  bool richProduct = true;        // one of everything that a copy must keep; else hardly anything
  bool oldCopy = false;           // at the destination
  bool wrapper = false;           // with the product, and older copies of its items beside the destination
  bool isFolderMissing = false;   // the one that gets the product
  bool trash = false;             // holds an item of the product's name already
  std::string product = "P.app";  // its name
};

class InstallationScene {
 public:
  explicit InstallationScene(const Furniture& furniture);

  // Runs one installation with a fault, and fails the test unless everything is as it must be afterwards. The
  // scene is then as before it.
  FaultRun installWithFault(std::size_t at, const Fault& fault, Threads threads);

 private:
  using Lines = std::vector<std::string>;
  // By path: all that changes with any change of an item.
  using Stamps = std::map<std::string, std::string>;

  void makeProduct() const;
  void makeRichProduct() const;
  void makeWrapper() const;
  void arrange();

  int install();
  void expectInstalled();
  void expectFailed(int code, const Fault& fault);
  void expectNothingHalf();
  void expectOldCopyKept(bool inPlace);
  void expectNoStaging();

  const Furniture furniture_;
  ScratchFolder scratch_;
  const std::string source_;
  const std::string wrapper_;
  const std::string applications_;
  const std::string destination_;
  const std::string trash_;
  FileTree product_;
  FileTree old_;
  Stamps stamps_;
  SharedLines log_;
};

}  // namespace kr::testing
