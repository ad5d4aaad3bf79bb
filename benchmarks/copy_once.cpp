// copy_once SOURCE DESTINATION: one copy by the copy engine, as a process of its own.
#include <cstdio>

#include "platform/linux/copy/CopyTree.h"

int main(int count, char** words) {
  if (count != 3) {
    std::fprintf(stderr, "usage: copy_once SOURCE DESTINATION\n");
    return 2;
  }
  const auto failure = kr::platform::copy::copyTree(words[1], words[2]);
  if (!failure) return 0;
  std::fprintf(stderr, "%s\n", failure->text().c_str());
  return 1;
}
