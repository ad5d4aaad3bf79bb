#import "library/process/KRProcess.h"
#include "platform/Services.h"
#include "platform/WindowOrder.h"

namespace {

kr::platform::WindowOrder& windowOrder() {
  return *kr::platform::services().windowOrder;
}

}  // namespace

@implementation KRProcess (WindowOrder)

- (void)wakeUp {
  windowOrder().wake(psn);
}

- (void)setHidden:(BOOL)hidden {
  windowOrder().setVisible(psn, !hidden);
}

- (void)setFrontProcess {
  windowOrder().setFront(psn, false);
}

- (void)setFrontProcessFrontWindowOnly {
  windowOrder().setFront(psn, true);
}

- (void)temporarilySwitchOut {
  [[KRProcess currentProcess] setFrontProcess];
  [self setFrontProcessFrontWindowOnly];
  [self wakeUp];
}

@end
