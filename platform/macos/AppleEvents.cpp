#include "platform/AppleEvents.h"

#include <Carbon/Carbon.h>

#include "platform/SystemServices.h"
#include "platform/macos/ProcessManager.h"

namespace kr::platform {
namespace {

using Step = AppleEventError::Step;

// The direct parameter as a list of one text.
constexpr char kDirectText[] = "'----':[TEXT(@)]";

class Descriptor {
 public:
  Descriptor() noexcept { AEInitializeDesc(&descriptor_); }
  ~Descriptor() { AEDisposeDesc(&descriptor_); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  [[nodiscard]] AEDesc* get() noexcept { return &descriptor_; }

 private:
  AEDesc descriptor_;
};

std::optional<AppleEventError> failed(Step step, OSStatus status) {
  if (status == noErr) return std::nullopt;
  return AppleEventError{.step = step, .status = status};
}

template <class Address>
OSStatus build(const AppleEvent& event, DescType addressType, const Address& address, AEDesc* built) {
  if (!event.directText || event.textIsAlone) {
    const OSStatus status =
        AEBuildAppleEvent(event.eventClass, event.eventID, addressType, &address, sizeof address,
                          kAutoGenerateReturnID, kAnyTransactionID, built, nullptr, "");
    if (status != noErr || !event.directText) return status;
    return AEPutParamPtr(built, keyDirectObject, typeUTF8Text, event.directText->data(),
                         static_cast<Size>(event.directText->size()));
  }
  return AEBuildAppleEvent(event.eventClass, event.eventID, addressType, &address, sizeof address,
                           kAutoGenerateReturnID, kAnyTransactionID, built, nullptr, kDirectText,
                           event.directText->c_str());
}

// An event addressed by process ID goes straight to the target: no other event is handled while a reply is
// waited for.
std::optional<AppleEventError> sendTo(pid_t pid, const AppleEvent& event) {
  Descriptor built;
  Descriptor reply;
  const OSStatus status = build(event, typeKernelProcessID, pid, built.get());
  if (status != noErr) return failed(Step::build, status);
  return failed(Step::send, AESendMessage(built.get(), reply.get(), event.sendMode, event.timeoutTicks));
}

// Address and event are made one after the other, so that the caller can tell which of them could not be.
OSStatus buildPlain(const AppleEvent& event, const ProcessSerialNumber& process, AEDesc* built, Step& step) {
  Descriptor address;
  step = Step::address;
  const OSStatus status = AECreateDesc(typeProcessSerialNumber, &process, sizeof process, address.get());
  if (status != noErr) return status;
  step = Step::build;
  return AECreateAppleEvent(event.eventClass, event.eventID, address.get(), kAutoGenerateReturnID,
                            kAnyTransactionID, built);
}

std::optional<AppleEventError> sendTo(SerialNumber process, const AppleEvent& event) {
  const ProcessSerialNumber number = macos::processSerialNumber(process);
  Descriptor built;
  Descriptor reply;
  Step step = Step::build;
  const OSStatus status = event.directText ? build(event, typeProcessSerialNumber, number, built.get())
                                           : buildPlain(event, number, built.get(), step);
  if (status != noErr) return failed(step, status);
  return failed(Step::send, AESend(built.get(), reply.get(), event.sendMode, event.sendPriority,
                                   event.timeoutTicks, nullptr, nullptr));
}

class AppleEventManager final : public AppleEvents {
 public:
  std::optional<AppleEventError> send(const AppleEvent& event) override {
    if (const pid_t* pid = std::get_if<pid_t>(&event.target)) return sendTo(*pid, event);
    return sendTo(*std::get_if<SerialNumber>(&event.target), event);
  }
};

}  // namespace

AppleEvents& systemAppleEvents() noexcept {
  static AppleEventManager events;
  return events;
}

}  // namespace kr::platform
