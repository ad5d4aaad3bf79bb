// Keeps the notifications of one name that the default center posts, until the end of the scope.
// Objective-C++ only.
#pragma once

#import <Foundation/Foundation.h>

#include <functional>
#include <string>
#include <vector>

@interface KRNotificationRecorder : NSObject {
 @public
  NSMutableArray* notifications;
  std::function<void(NSNotification*)>* onNotification;
}
- (void)received:(NSNotification*)notification;
@end

namespace kr::testing {

class NotificationRecorder {
 public:
  explicit NotificationRecorder(NSString* name);
  ~NotificationRecorder();
  NotificationRecorder(const NotificationRecorder&) = delete;
  NotificationRecorder& operator=(const NotificationRecorder&) = delete;

  // Called with each notification after it was kept.
  std::function<void(NSNotification*)> onNotification;

  // All so far, oldest first.
  [[nodiscard]] NSArray* notifications() const { return recorder_->notifications; }
  [[nodiscard]] NSUInteger count() const { return [recorder_->notifications count]; }

  // The value under the key of each, in words.
  [[nodiscard]] std::vector<std::string> values(NSString* key) const;

 private:
  KRNotificationRecorder* recorder_;
};

}  // namespace kr::testing
