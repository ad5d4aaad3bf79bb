// send-done TAG [PID]: sends the event by which a product tells the installer that it has started, to every
// running installer or to the process with that ID. Exit status: 0 it was delivered, 1 nobody was there to
// take it, 2 wrong use.
#include <charconv>
#include <cstdio>
#include <cstring>

#include "samples/done/SendDone.h"

namespace {

constexpr int kDelivered = 0;
constexpr int kNobody = 1;
constexpr int kWrongUse = 2;

int wrongUse() {
  std::fputs("usage: send-done TAG [PID]\n  TAG  product name, a space, version: \"Velmora Notes 1.0\"\n",
             stderr);
  return kWrongUse;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 && argc != 3) return wrongUse();
  const std::string tag = argv[1];
  if (argc == 2) {
    if (kr::sendDone(tag) > 0) return kDelivered;
    std::fputs("send-done: no installer is running\n", stderr);
    return kNobody;
  }
  pid_t installer = 0;
  const char* end = argv[2] + std::strlen(argv[2]);
  const auto [stop, error] = std::from_chars(argv[2], end, installer);
  if (error != std::errc() || stop != end || installer <= 0) return wrongUse();
  if (kr::sendDoneTo(installer, tag)) return kDelivered;
  std::fprintf(stderr, "send-done: process %d takes no events\n", static_cast<int>(installer));
  return kNobody;
}
