#import "platform/gnustep/ResponderValues.h"

#include <objc/runtime.h>

#include <map>
#include <mutex>
#include <utility>

namespace kr::platform {
namespace {

// The responder, which is not retained, and the key; the values are.
using Values = std::map<std::pair<const void*, const void*>, id>;

std::mutex gMutex;
IMP gOriginalDealloc;

Values& values() {
  static Values& all = *new Values;
  return all;
}

void deallocResponder(NSResponder* responder, SEL selector) {
  Values gone;
  {
    const std::lock_guard lock(gMutex);
    auto next = values().lower_bound({responder, nullptr});
    while (next != values().end() && next->first.first == responder) {
      gone.insert(values().extract(next++));
    }
  }
  for (const auto& entry : gone) [entry.second release];
  reinterpret_cast<void (*)(NSResponder*, SEL)>(gOriginalDealloc)(responder, selector);
}

}  // namespace

id responderValue(NSResponder* responder, const void* key) {
  const std::lock_guard lock(gMutex);
  const auto found = values().find({responder, key});
  return found == values().end() ? nil : [[found->second retain] autorelease];
}

void setResponderValue(NSResponder* responder, const void* key, id value) {
  id previous = nil;
  {
    const std::lock_guard lock(gMutex);
    if (gOriginalDealloc == nullptr) {
      Method dealloc = class_getInstanceMethod([NSResponder class], @selector(dealloc));
      gOriginalDealloc = method_setImplementation(dealloc, reinterpret_cast<IMP>(deallocResponder));
    }
    const auto found = values().find({responder, key});
    if (found != values().end()) {
      previous = found->second;
      values().erase(found);
    }
    if (value != nil) values().emplace(std::pair<const void*, const void*>(responder, key), [value retain]);
  }
  [previous release];
}

}  // namespace kr::platform
