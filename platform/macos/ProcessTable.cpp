#include "platform/ProcessTable.h"

#include <ApplicationServices/ApplicationServices.h>

#include "platform/SystemServices.h"
#include "platform/macos/CFOwner.h"
#include "platform/macos/CFText.h"
#include "platform/macos/KernelTimes.h"
#include "platform/macos/ProcessManager.h"
#include "platform/macos/ResourceFork.h"

namespace kr::platform {
namespace {

using macos::CFOwner;
using macos::locationOf;
using macos::processSerialNumber;

constexpr LSItemInfoFlags kNativePackage = kLSItemInfoIsPackage | kLSItemInfoIsNativeApp;

// Whatever the system may add to its answer, only values of a property list can be handed on as one.
void keepIfSerialisable(const void* key, const void* value, void* kept) {
  if (CFGetTypeID(key) == CFStringGetTypeID() &&
      CFPropertyListIsValid(value, kCFPropertyListBinaryFormat_v1_0)) {
    CFDictionarySetValue(static_cast<CFMutableDictionaryRef>(kept), key, value);
  }
}

std::optional<std::string> serialised(CFDictionaryRef dictionary) {
  const CFOwner<CFMutableDictionaryRef> kept(CFDictionaryCreateMutable(
      nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
  CFDictionaryApplyFunction(dictionary, keepIfSerialisable, kept.get());
  const CFOwner<CFDataRef> data(
      CFPropertyListCreateData(nullptr, kept.get(), kCFPropertyListBinaryFormat_v1_0, 0, nullptr));
  if (!data) return std::nullopt;
  return std::string(reinterpret_cast<const char*>(CFDataGetBytePtr(data.get())),
                     static_cast<std::size_t>(CFDataGetLength(data.get())));
}

class ProcessManager final : public ProcessTable {
 public:
  std::vector<SerialNumber> all() override {
    std::vector<SerialNumber> processes;
    ProcessSerialNumber number{0, kNoProcess};
    while (GetNextProcess(&number) == noErr) processes.push_back(macos::serialNumber(number));
    return processes;
  }

  std::optional<SerialNumber> current() override {
    ProcessSerialNumber number{};
    if (GetCurrentProcess(&number) != noErr) return std::nullopt;
    return macos::serialNumber(number);
  }

  std::optional<SerialNumber> forPID(pid_t pid) override {
    ProcessSerialNumber number{};
    if (GetProcessForPID(pid, &number) != noErr) return std::nullopt;
    return macos::serialNumber(number);
  }

  std::optional<pid_t> pid(SerialNumber process) override {
    const ProcessSerialNumber number = processSerialNumber(process);
    pid_t pid = 0;
    if (GetProcessPID(&number, &pid) != noErr) return std::nullopt;
    return pid;
  }

  bool same(SerialNumber one, SerialNumber other) override {
    const ProcessSerialNumber first = processSerialNumber(one);
    const ProcessSerialNumber second = processSerialNumber(other);
    Boolean same = false;
    return SameProcess(&first, &second, &same) == noErr && same;
  }

  std::optional<ProcessRecord> record(SerialNumber process) override {
    const ProcessSerialNumber number = processSerialNumber(process);
    Str255 name{};  // a length byte, then the text
    ProcessInfoRec information{};
    information.processInfoLength = sizeof information;
    information.processName = name;
    if (GetProcessInformation(&number, &information) != noErr) return std::nullopt;
    const CFOwner<CFStringRef> decoded(
        CFStringCreateWithPascalString(nullptr, name, kCFStringEncodingMacRoman));
    return ProcessRecord{.signature = information.processSignature, .name = macos::text(decoded.get())};
  }

  std::optional<std::string> displayName(SerialNumber process) override {
    const ProcessSerialNumber number = processSerialNumber(process);
    CFOwner<CFStringRef> name;
    if (CopyProcessName(&number, name.receive()) != noErr || !name) return std::nullopt;
    return macos::text(name.get());
  }

  std::optional<std::string> bundleLocation(SerialNumber process) override {
    const std::optional<FSRef> location = locationOf(process);
    if (!location) return std::nullopt;
    return macos::path(CFOwner<CFURLRef>(CFURLCreateFromFSRef(nullptr, &*location)).get());
  }

  std::optional<std::string> information(SerialNumber process) override {
    const ProcessSerialNumber number = processSerialNumber(process);
    const CFOwner<CFDictionaryRef> dictionary(ProcessInformationCopyDictionary(
        &number, static_cast<UInt32>(kProcessDictionaryIncludeAllInformationMask)));
    if (!dictionary) return std::nullopt;
    return serialised(dictionary.get());
  }

  bool isNativePackage(SerialNumber process) override {
    const std::optional<FSRef> location = locationOf(process);
    LSItemInfoRecord item{};
    return location && LSCopyItemInfoForRef(&*location, kLSRequestAppTypeFlags, &item) == noErr &&
           (item.flags & kNativePackage) == kNativePackage;
  }

  std::optional<std::string> versionResource(SerialNumber process) override {
    const std::optional<FSRef> location = locationOf(process);
    if (!location) return std::nullopt;
    return macos::versionResource(*location);
  }

  double startTime(pid_t pid) override { return macos::startTime(pid); }

  std::optional<std::string> userTime(pid_t pid) override { return macos::userTime(pid); }
};

}  // namespace

ProcessTable& systemProcessTable() noexcept {
  static ProcessManager table;
  return table;
}

}  // namespace kr::platform
