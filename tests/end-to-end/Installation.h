// Starts the built installer the way a product or a user does, on a desktop and in a home folder of the
// test's own, presses its buttons through the X server, and looks at what it left in the log and on the disk.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "tests/support/Child.h"
#include "tests/support/Desktop.h"
#include "tests/support/ScratchFolder.h"

namespace kr::testing {

using Lines = std::vector<std::string>;

class Installation : public ::testing::Test {
 protected:
  Installation();
  ~Installation() override;

  // Starts the installer with these arguments and waits for its window. The program is that of the build
  // unless another copy is named.
  void start(const Lines& arguments, const std::string& program = installerProgram());

  // Starts it on a new small product to be installed there, with further arguments.
  void openSmall(const std::string& destination, const Lines& more = {});

  // Presses a key in the installer's window: Return for its default button, Escape for the other. Does
  // nothing without a window: whoever presses waits for what follows from it.
  void press(const std::string& key);

  // Presses a key in whichever window has the focus.
  static void type(const std::string& key);

  // Clicks into the installer's window, so far from its left upper corner, while a key is held where one is
  // named.
  void click(int x, int y, const std::string& held = {});

  // The middle of the Install button, in a window of the size that it always has.
  static constexpr int kInstallX = 478;
  static constexpr int kInstallY = 367;

  // Identifiers of the installer's windows: its window, and a sheet on it.
  [[nodiscard]] static Lines windows();

  // The installer's wait status, once it has ended; none when it still runs after that time.
  [[nodiscard]] std::optional<int> ended(double seconds = 15) { return installer_->wait(seconds); }
  void signal(int number) { installer_->signal(number); }

  // Starts the installer on a product and presses Install.
  void install(const std::string& product, const std::string& destination, const Lines& more = {});

  // Waits for the window to be set up, and presses Install until the installation begins.
  void pressInstall();

  // Waits for a line of the log that begins with the text; fails the test when none comes.
  void expectLine(const std::string& beginning, double seconds = 30);

  // Waits for the installation's end: a product that was launched, or a failure.
  void expectInstalled(const std::string& destination);
  void expectFailed(const std::string& line);

  // Presses OK and expects the installer to end by itself with status 0.
  void expectQuitsOnOK();

  // Expects the installer to end by itself with status 0 within so many seconds; answers how many it took.
  double expectEnds(double seconds);
  // Whether it ends within so many seconds, or has ended.
  bool ends(double seconds);
  [[nodiscard]] pid_t installerPID() const { return installer_->pid(); }

  // Closes the installer's window as the user does in its title bar.
  void closeWindow();

  // The window's contents, as a text that is the same for the same picture; empty without a window.
  [[nodiscard]] std::string picture() const;

  // Lines of the log so far, without the time stamps.
  [[nodiscard]] Lines log() const;
  [[nodiscard]] bool logHas(const std::string& line) const;

  // Process ID of the installer.
  [[nodiscard]] pid_t installer() const { return installer_->pid(); }

  // Ends the X server as if it had crashed.
  void stopDisplay() { desktop_->stopDisplay(); }

  // Kills the installer without warning.
  void kill();

  // Programs that run from below the folder.
  [[nodiscard]] static std::vector<pid_t> processesIn(const std::string& folder);

  // Starts the product's program by hand and waits for its window.
  void launch(const std::string& program, const std::string& windowName);

  // Names in the Trash.
  [[nodiscard]] Lines trashed() const;

  // The same files with the same contents, kinds and modes in both folders.
  static void expectSameTree(const std::string& one, const std::string& other);

  // The program of the built installer, and the folder of the built sample product of a version.
  [[nodiscard]] static std::string installerProgram();
  [[nodiscard]] static std::string sample(const std::string& version);

  ScratchFolder scratch_;
  const std::string home_;

 private:
  [[nodiscard]] std::string logPath() const;
  [[nodiscard]] std::optional<std::string> window() const;

  std::vector<std::unique_ptr<ScopedVariable>> environment_;
  std::optional<Desktop> desktop_;
  std::vector<Child> launched_;
  std::optional<Child> installer_;
  std::optional<int> status_;  // how the installer has ended
};

}  // namespace kr::testing
