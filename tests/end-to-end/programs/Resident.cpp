// The program of a product that stays until it is ended, though not for ever: a test that dies leaves nothing
// behind.
#include <unistd.h>

int main() {
  ::alarm(180);
  for (;;) ::pause();
}
