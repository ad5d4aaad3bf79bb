// train SOURCE DESTINATION [WRAPPER]: the copy that an installation makes with the rights of root. Says on
// standard error, in one line, why it fails; Status.h has the exit statuses, docs/security.md the reasons.
#include <unistd.h>

#include <string>
#include <string_view>
#include <vector>

#include "installer/train/Surroundings.h"
#include "installer/train/Train.h"
#include "platform/SingleLine.h"

namespace {

using kr::train::Status;

void say(std::string_view text) {
  const std::string line = "train: " + kr::platform::singleLine(text) + "\n";
  (void)!::write(STDERR_FILENO, line.data(), line.size());
}

int end(const kr::train::Refusal& refusal) {
  std::string text(meaning(refusal.status));
  if (!refusal.reason.empty()) text += ": " + refusal.reason;
  say(text);
  return static_cast<int>(refusal.status);
}

}  // namespace

int main(int count, char** words) {
  if (!kr::train::settle()) return end({Status::unsettled, {}});
  if (count != 3 && count != 4) return end({Status::usage, {}});
  kr::train::Request request{words[1], words[2], {}};
  if (count == 4) request.wrapper = words[3];
  std::vector<std::string> notes;
  const auto refused = install(request, notes);
  for (const std::string& note : notes) say(note);
  return refused ? end(*refused) : static_cast<int>(Status::installed);
}
