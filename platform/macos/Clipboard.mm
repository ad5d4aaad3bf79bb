#include "platform/Clipboard.h"

#import <AppKit/AppKit.h>

#include "platform/SystemServices.h"

namespace kr::platform {
namespace {

class GeneralPasteboard final : public Clipboard {
 public:
  long changeCount() override {
    @autoreleasepool {
      return [[NSPasteboard generalPasteboard] changeCount];
    }
  }
};

}  // namespace

Clipboard& systemClipboard() noexcept {
  static GeneralPasteboard clipboard;
  return clipboard;
}

}  // namespace kr::platform
