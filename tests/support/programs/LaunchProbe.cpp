// Prints the signature of what has started it, or "none".
#include <cstdio>

#include "platform/Launcher.h"
#include "platform/SystemServices.h"

int main() {
  std::puts(kr::platform::systemLauncher().signature().value_or("none").c_str());
}
