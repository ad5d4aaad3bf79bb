// A table of running applications that a test fills in.
//
//   InMemoryProcessTable table;
//   const SerialNumber one = table.add({.pid = 100, .signature = 'ABCD', .name = "Product", .path =
//   "/x/Product.app"}); table.end(one);
#pragma once

#include <algorithm>
#include <atomic>
#include <initializer_list>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/ProcessTable.h"

namespace kr::platform::testing {

struct InMemoryProcess {
  pid_t pid = 0;
  std::uint32_t signature = 0x3F3F3F3F;  // '????'
  std::string name;
  std::optional<std::string> displayName;
  std::optional<std::string> path;         // none: the location cannot be had
  std::optional<std::string> information;  // a serialised property list, see propertyListText()
  bool nativePackage = true;
  std::optional<std::string> versionResource;
  double startTime = 0;
  std::optional<std::string> userTime;
  SerialNumber serial{};  // set by add() where it is {0, 0}
};

// An XML property list whose root is a dictionary of texts.
[[nodiscard]] inline std::string propertyListText(
    std::initializer_list<std::pair<std::string_view, std::string_view>> entries) {
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>";
  for (const auto& [key, value] : entries) {
    text.append("<key>").append(key).append("</key><string>").append(value).append("</string>");
  }
  return text + "</dict></plist>\n";
}

class InMemoryProcessTable final : public ProcessTable {
 public:
  // Adds a running process at the end of the list. Unless one is given, its serial number is one that no
  // process of any table has had before, as process objects are kept from test to test.
  SerialNumber add(InMemoryProcess process) {
    const std::lock_guard lock(mutex_);
    if (process.serial == SerialNumber{})
      process.serial = {++started(), static_cast<std::uint32_t>(process.pid)};
    running_.push_back(process);
    return process.serial;
  }

  // The process ends: the system knows nothing of it any more.
  void end(SerialNumber process) {
    const std::lock_guard lock(mutex_);
    std::erase_if(running_, [&](const InMemoryProcess& entry) { return entry.serial == process; });
  }
  void endPID(pid_t pid) {
    const std::lock_guard lock(mutex_);
    std::erase_if(running_, [&](const InMemoryProcess& entry) { return entry.pid == pid; });
  }

  // Which process current() answers; none at first.
  void setCurrent(std::optional<SerialNumber> process) {
    const std::lock_guard lock(mutex_);
    current_ = process;
  }

  // Replaces what the system says about a running process.
  void change(const InMemoryProcess& process) {
    const std::lock_guard lock(mutex_);
    for (InMemoryProcess& entry : running_) {
      if (entry.serial == process.serial) entry = process;
    }
  }

  [[nodiscard]] std::optional<InMemoryProcess> find(SerialNumber process) const {
    return first([&](const InMemoryProcess& entry) { return entry.serial == process; });
  }
  [[nodiscard]] std::optional<InMemoryProcess> findPID(pid_t pid) const {
    return first([&](const InMemoryProcess& entry) { return entry.pid == pid; });
  }

  // How often record() and userTime() were asked for.
  [[nodiscard]] int recordCalls() const { return recordCalls_; }
  [[nodiscard]] const std::vector<pid_t>& userTimeCalls() const { return userTimeCalls_; }

  std::vector<SerialNumber> all() override {
    const std::lock_guard lock(mutex_);
    std::vector<SerialNumber> list;
    for (const InMemoryProcess& entry : running_) list.push_back(entry.serial);
    return list;
  }
  std::optional<SerialNumber> current() override {
    const std::lock_guard lock(mutex_);
    return current_;
  }
  std::optional<SerialNumber> forPID(pid_t pid) override {
    return member(findPID(pid), [](const InMemoryProcess& entry) { return std::optional(entry.serial); });
  }
  std::optional<pid_t> pid(SerialNumber process) override {
    return member(find(process), [](const InMemoryProcess& entry) { return std::optional(entry.pid); });
  }
  bool same(SerialNumber one, SerialNumber other) override { return one == other; }
  std::optional<ProcessRecord> record(SerialNumber process) override {
    ++recordCalls_;
    return member(find(process), [](const InMemoryProcess& entry) {
      return std::optional(ProcessRecord{entry.signature, entry.name});
    });
  }
  std::optional<std::string> displayName(SerialNumber process) override {
    return member(find(process), [](const InMemoryProcess& entry) { return entry.displayName; });
  }
  std::optional<std::string> bundleLocation(SerialNumber process) override {
    return member(find(process), [](const InMemoryProcess& entry) { return entry.path; });
  }
  std::optional<std::string> information(SerialNumber process) override {
    return member(find(process), [](const InMemoryProcess& entry) { return entry.information; });
  }
  bool isNativePackage(SerialNumber process) override {
    const std::optional<InMemoryProcess> found = find(process);
    return found && found->nativePackage;
  }
  std::optional<std::string> versionResource(SerialNumber process) override {
    return member(find(process), [](const InMemoryProcess& entry) { return entry.versionResource; });
  }
  double startTime(pid_t pid) override {
    const std::optional<InMemoryProcess> found = findPID(pid);
    return found ? found->startTime : 0.0;
  }
  std::optional<std::string> userTime(pid_t pid) override {
    userTimeCalls_.push_back(pid);
    return member(findPID(pid), [](const InMemoryProcess& entry) { return entry.userTime; });
  }

 private:
  static std::atomic<std::uint32_t>& started() {
    static std::atomic<std::uint32_t> count = 0;
    return count;
  }

  template <class Test>
  std::optional<InMemoryProcess> first(Test test) const {
    const std::lock_guard lock(mutex_);
    const auto found = std::find_if(running_.begin(), running_.end(), test);
    return found == running_.end() ? std::nullopt : std::optional(*found);
  }
  template <class Get>
  static auto member(const std::optional<InMemoryProcess>& entry, Get get) -> decltype(get(*entry)) {
    return entry ? get(*entry) : std::nullopt;
  }

  mutable std::mutex mutex_;
  std::vector<InMemoryProcess> running_;
  std::optional<SerialNumber> current_;
  int recordCalls_ = 0;
  std::vector<pid_t> userTimeCalls_;
};

}  // namespace kr::platform::testing
