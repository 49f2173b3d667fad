/* Asks for something that isn't there, and tells which version it was compiled with. */
#include <stdio.h>
#include <string.h>
#include <tarnwick/tarnwick.h>
#include <tarnwick/version.h>

int main(void) {
  char answer[16];
  const int length = IA_GetGameDetailsByPathJson("C:\\no such folder\\game.exe", answer, sizeof answer);
  printf("%s %d.%d.%d %s\n", TARNWICK_VERSION, TARNWICK_VERSION_MAJOR, TARNWICK_VERSION_MINOR,
         TARNWICK_VERSION_PATCH, answer);
  return length == 2 && strcmp(answer, "{}") == 0 ? 0 : 1;
}
