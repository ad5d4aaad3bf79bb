// Another application that takes Apple events, and writes a line for each: class, ID, whether a reply is
// wanted, and the texts of the direct object.
//
//   ready
//   SinS Done 0 [Product 1.0]
//
// "-output N" writes to descriptor N; "-answer handled", "refused" or "never" says how events that want a
// reply are answered.
#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/linux/ProcFS.h"
#include "tests/support/EventReceiver.h"

namespace {

int output = STDOUT_FILENO;

void print(const std::string& line) {
  const std::string text = line + "\n";
  if (::write(output, text.data(), text.size()) < 0) std::exit(1);
}

std::string code(std::uint32_t value) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) text += static_cast<char>(value >> shift & 0xFF);
  return text;
}

kr::testing::EventAnswer answer(std::string_view word) {
  if (word == "refused") return kr::testing::EventAnswer::refused;
  return word == "never" ? kr::testing::EventAnswer::never : kr::testing::EventAnswer::handled;
}

}  // namespace

int main(int count, char** words) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  kr::testing::EventAnswer answers = kr::testing::EventAnswer::handled;
  for (int at = 1; at + 1 < count; at += 2) {
    const std::string_view word = words[at];
    if (word == "-output") output = std::atoi(words[at + 1]);
    if (word == "-answer") answers = answer(words[at + 1]);
  }
  const kr::testing::EventReceiver receiver(kr::platform::procfs::serialNumber(::getpid()).value(), answers);
  print("ready");
  for (std::size_t printed = 0;; ::usleep(5000)) {
    const auto events = receiver.received();
    for (; printed < events.size(); ++printed) {
      const kr::testing::ReceivedEvent& event = events[printed];
      std::string texts;
      for (const std::string& text : event.directTexts) texts += " [" + text + "]";
      print(code(event.eventClass) + " " + code(event.eventID) + (event.wantsReply ? " 1" : " 0") + texts);
    }
  }
}
