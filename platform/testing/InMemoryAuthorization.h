// Administrator rights that answer what they are told and write down what they are asked for. One thread at a
// time.
#pragma once

#include <unistd.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Authorization.h"
#include "platform/linux/ChildSignalGuard.h"

namespace kr::platform::testing {

class InMemoryAuthorization final : public Authorization {
 public:
  // `calls` takes every call as "create TOOL", "obtain NAME FLAGS", "execute TOOL [ARGUMENT]...", and "free"
  // at the end of a reference.
  explicit InMemoryAuthorization(std::vector<std::string>& calls) : calls_(calls) {}

  bool available = true;  // whether references can be created
  AuthorizationStatus rightStatus = kAuthorized;
  AuthorizationStatus executeStatus = kAuthorized;
  // What the tool does, in a child process of its own, and its exit status. None starts no child.
  std::function<int()> tool;

  std::unique_ptr<AuthorizationReference> create(const std::string& path) override {
    calls_.push_back("create " + path);
    if (!available) return nullptr;
    return std::make_unique<Reference>(*this);
  }

 private:
  class Reference final : public AuthorizationReference {
   public:
    explicit Reference(InMemoryAuthorization& owner) : owner_(owner) {}
    ~Reference() override { owner_.calls_.emplace_back("free"); }
    Reference(const Reference&) = delete;
    Reference& operator=(const Reference&) = delete;

    AuthorizationStatus obtainRight(const char* name, std::uint32_t flags) override {
      owner_.calls_.push_back("obtain " + std::string(name) + " " + std::to_string(flags));
      return owner_.rightStatus;
    }

    AuthorizationStatus execute(const char* path, const char* const* arguments) override {
      std::string call = "execute " + std::string(path);
      for (; *arguments != nullptr; ++arguments) call += " [" + std::string(*arguments) + "]";
      owner_.calls_.push_back(call);
      childSignal_.emplace();
      if (owner_.executeStatus == kAuthorized && owner_.tool && ::fork() == 0) ::_exit(owner_.tool());
      return owner_.executeStatus;
    }

   private:
    InMemoryAuthorization& owner_;
    std::optional<ChildSignalGuard> childSignal_;  // the end of the tool is the caller's to wait for
  };

  std::vector<std::string>& calls_;
};

}  // namespace kr::platform::testing
