#import "library/process/KRProcess.h"
#include "library/process/Retained.h"
#include "library/utilities/ClipboardPublisher.h"
#import "library/utilities/KRUtilities.h"
#include "platform/Clipboard.h"
#include "platform/Services.h"

namespace {

struct ProcessReference {
  kr::Retained<KRProcess> process;

  bool operator==(const ProcessReference& other) const {
    return process.get() == other.process.get() || [process.get() isEqual:other.process.get()];
  }
};

ProcessReference frontProcess() {
  return {kr::Retained<KRProcess>([KRProcess frontProcess])};
}

long clipboardChangeCount() {
  return kr::platform::services().clipboard->changeCount();
}

kr::ClipboardPublisher<ProcessReference>& clipboardPublisher() {
  static auto& publisher = *new kr::ClipboardPublisher<ProcessReference>;
  return publisher;
}

}  // namespace

@implementation KRUtilities (Desktop)

+ (void)installProcessWatcher {
  [[NSNotificationCenter defaultCenter] addObserver:self
                                           selector:@selector(processSwitched:)
                                               name:KRProcessChangeNotification
                                             object:nil];
}

+ (void)processSwitched:(NSNotification*)notification {
  clipboardPublisher().processSwitched(frontProcess(), clipboardChangeCount);
}

+ (KRProcess*)clipboardPublisherProcess {
  KRProcess* process = clipboardPublisher().publisher(frontProcess(), clipboardChangeCount).process.get();
  return [[process retain] autorelease];
}

@end
