#include "platform/Log.h"

#import <Foundation/Foundation.h>

#include "platform/SystemServices.h"
#import "platform/macos/FileText.h"

namespace kr::platform {
namespace {

class SystemLog final : public LogSink {
 public:
  // The text is an argument and never the format: it may hold percent signs.
  void line(std::string_view text) noexcept override {
    @autoreleasepool {
      NSLog(@"%@", macos::cocoaText(text));
    }
  }
};

}  // namespace

LogSink& systemLog() noexcept {
  static SystemLog log;
  return log;
}

}  // namespace kr::platform
