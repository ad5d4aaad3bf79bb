// Questions that may never be answered, such as those about files of a server that is gone. Who asks waits no
// longer than Patience.h says from when the question was put. It stays open until it is answered, in a thread
// of its own; meanwhile the same question joins it rather than leave one more thread behind. Any thread.
//
//   PatientQuestions<int> questions;
//   if (const std::optional<int> size = questions.ask(path, [path] { return sizeOf(path); })) ...
#pragma once

#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <thread>

#include "platform/linux/Patience.h"

namespace kr::platform {

template <class Answer>
class PatientQuestions {
 public:
  // None when no answer comes in time, or nobody can wait for one. `about` tells questions apart. `find` runs
  // in another thread, may outlive the caller, and must not raise.
  template <class Find>
  [[nodiscard]] std::optional<Answer> ask(const std::string& about, Find find) {
    std::unique_lock lock(state_->mutex);
    std::shared_ptr<Question>& open = state_->open[about];
    if (!open) {
      open = std::make_shared<Question>();
      if (!startFinding(about, open, std::move(find))) {
        state_->open.erase(about);
        return std::nullopt;
      }
    }
    const std::shared_ptr<Question> question = open;
    state_->answered.wait_until(lock, question->deadline, [&] { return question->answer.has_value(); });
    return question->answer;
  }

 private:
  struct Question {
    std::chrono::steady_clock::time_point deadline = std::chrono::steady_clock::now() + kPatience;
    std::optional<Answer> answer;
  };
  // Lives as long as anybody waits.
  struct State {
    std::mutex mutex;
    std::condition_variable answered;
    std::map<std::string, std::shared_ptr<Question>> open;
  };

  template <class Find>
  [[nodiscard]] bool startFinding(const std::string& about, const std::shared_ptr<Question>& question,
                                  Find find) {
    try {
      std::thread([state = state_, about, question, find = std::move(find)] {
        Answer answer = find();
        const std::lock_guard lock(state->mutex);
        question->answer = std::move(answer);
        state->open.erase(about);
        state->answered.notify_all();
      }).detach();
    } catch (const std::system_error&) {
      return false;
    }
    return true;
  }

  const std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace kr::platform
