#include "platform/gnustep/WindowServerLoss.h"

#import <Foundation/Foundation.h>

#include <cstdlib>

#include "platform/Log.h"
#include "platform/UnfinishedWork.h"
#include "platform/linux/SharedLibrary.h"

namespace kr::platform {
namespace {

// Of the library that the toolkit has connected with.
using ErrorHandler = int(void* display);

// The library ends the program when this returns.
int serverLost(void*) {
  log("lost the window server");
  if ([NSThread isMainThread] && UnfinishedWork::exists()) {
    log("finishing without a window");
    UnfinishedWork::finishAll();
  }
  std::exit(EXIT_FAILURE);
}

}  // namespace

void finishWorkWithoutWindowServer() {
  static SharedLibrary library("libX11.so.6");
  auto* const setErrorHandler = library.function<ErrorHandler*(ErrorHandler*)>("XSetIOErrorHandler");
  if (setErrorHandler != nullptr) setErrorHandler(serverLost);
}

}  // namespace kr::platform
