// File operations that write down what they are asked for, answer failures where they are told to, and
// otherwise do nothing, or hand on to operations that do. One thread.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/FileOperations.h"

namespace kr::platform::testing {

class RecordingFileOperations final : public FileOperations {
 public:
  // `calls` takes every call as "copy SOURCE > DESTINATION", "recycle PATH" or "remove PATH". `next` does the
  // work; none does nothing.
  explicit RecordingFileOperations(std::vector<std::string>& calls, FileOperations* next = nullptr)
      : calls_(calls), next_(next) {}

  std::map<std::string, Failure> failures;  // by the call, as it is written down
  std::map<std::string, bool> writable;     // by path; others are

  std::optional<Failure> copyTree(const std::string& source, const std::string& destination) override {
    return answer("copy " + source + " > " + destination,
                  [&] { return next_->copyTree(source, destination); });
  }
  std::optional<Failure> recycle(const std::string& path) override {
    return answer("recycle " + path, [&] { return next_->recycle(path); });
  }
  std::optional<Failure> removeTree(const std::string& path) override {
    return answer("remove " + path, [&] { return next_->removeTree(path); });
  }
  bool isWritable(const std::string& path) override {
    const auto known = writable.find(path);
    if (known != writable.end()) return known->second;
    return next_ == nullptr || next_->isWritable(path);
  }

 private:
  template <class Work>
  std::optional<Failure> answer(const std::string& call, Work work) {
    calls_.push_back(call);
    const auto failure = failures.find(call);
    if (failure != failures.end()) return failure->second;
    return next_ == nullptr ? std::nullopt : work();
  }

  std::vector<std::string>& calls_;
  FileOperations* next_;
};

}  // namespace kr::platform::testing
