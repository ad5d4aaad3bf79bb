#import "tests/support/NotificationRecorder.h"

#import "platform/cocoa/Bridging.h"

@implementation KRNotificationRecorder

- (void)received:(NSNotification*)notification {
  [notifications addObject:notification];
  if (*onNotification) (*onNotification)(notification);
}

@end

namespace kr::testing {

NotificationRecorder::NotificationRecorder(NSString* name)
    : recorder_([[KRNotificationRecorder alloc] init]) {
  recorder_->notifications = [[NSMutableArray alloc] init];
  recorder_->onNotification = &onNotification;
  [[NSNotificationCenter defaultCenter] addObserver:recorder_
                                           selector:@selector(received:)
                                               name:name
                                             object:nil];
}

NotificationRecorder::~NotificationRecorder() {
  [[NSNotificationCenter defaultCenter] removeObserver:recorder_];
  [recorder_->notifications release];
  [recorder_ release];
}

std::vector<std::string> NotificationRecorder::values(NSString* key) const {
  std::vector<std::string> result;
  for (NSNotification* notification in recorder_->notifications) {
    result.push_back(toBytes([[[notification userInfo] objectForKey:key] description]));
  }
  return result;
}

}  // namespace kr::testing
