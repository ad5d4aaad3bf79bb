// Stands for the user in front of polkit's password dialog. Answers for one process; only root may answer
// without a password.
#pragma once

#include <sys/types.h>

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace kr::testing {

class BusObject;

class PolkitAgent {
 public:
  // What the user does: types the right password, types a wrong one and gives up, closes the dialog, or
  // leaves it open.
  enum class User { confirms, fails, dismisses, hesitates };

  // The process is one that runs, and its user reads messages in this locale. Throws std::runtime_error where
  // the authority does not take the agent.
  PolkitAgent(pid_t process, User user, const char* locale = "C");
  ~PolkitAgent();

  // The actions that the user was asked for, with their messages: "ACTION: MESSAGE".
  [[nodiscard]] std::vector<std::string> asked() const;

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> asked_;
  std::shared_ptr<void> unanswered_;
  std::unique_ptr<BusObject> object_;
};

}  // namespace kr::testing
