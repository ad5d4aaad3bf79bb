// Watches the applications as another program would that is built on the library, and writes a line for
// everything that it is told:
//
//   ready APPLICATIONS                once it watches; the number of applications
//   change COUNTER CACHED             at each notification: its value, the counter, the cache's entries
//
// "-output N" writes to descriptor N, "-application YES" runs inside the toolkit's application object (with a
// window server) and not on a bare run loop. Bare words would be files to open for the toolkit.
#import <AppKit/AppKit.h>
#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>

#import "library/process/KRProcess.h"

namespace {

int output = STDOUT_FILENO;

void print(const std::string& line) {
  const std::string text = line + "\n";
  if (::write(output, text.data(), text.size()) < 0) std::exit(1);
}

}  // namespace

@interface KRMonitor : NSObject
- (void)changed:(NSNotification*)notification;
@end

@implementation KRMonitor

- (void)changed:(NSNotification*)notification {
  NSString* change = [[notification userInfo] objectForKey:@"change"];
  const std::size_t cached = [[[KRProcess cachedProcessesEnumerator] allObjects] count];
  print(std::string([change UTF8String]) + " " + std::to_string([KRProcess applicationLaunchEndCount]) + " " +
        std::to_string(cached));
}

@end

int main(int count, char** words) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  bool insideApplication = false;
  for (int at = 1; at + 1 < count; at += 2) {
    const std::string_view word = words[at];
    if (word == "-output") output = std::atoi(words[at + 1]);
    if (word == "-application") insideApplication = true;
  }
  @autoreleasepool {
    if (insideApplication) [NSApplication sharedApplication];
    [[NSNotificationCenter defaultCenter] addObserver:[[KRMonitor alloc] init]
                                             selector:@selector(changed:)
                                                 name:KRProcessChangeNotification
                                               object:[KRProcess class]];
    print("ready " + std::to_string([[KRProcess allProcesses] count]));
    if (insideApplication) {
      [NSApp run];
    } else {
      [[NSRunLoop currentRunLoop] run];
    }
  }
  // The run loop ends when nothing is watched.
  return 1;
}
