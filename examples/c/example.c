/*
 * Tarnwick in C: what is installed on this machine, and what is in the foreground.
 *
 *   example scan CATALOGUE    the games, as one line of JSON
 *   example apps              the installed applications, as one line of JSON
 *   example watch SECONDS     a line for each process that comes to the foreground
 *
 * Compile it with mingw-w64, where `include` and `lib` are the package's folders, and put Tarnwick.dll beside
 * it:
 *
 *   x86_64-w64-mingw32-gcc -std=c99 -I include example.c -o example.exe -L lib -lTarnwick
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <windows.h>

#include "tarnwick/tarnwick.h"

typedef int (*Call)(const char* argument, char* buffer, int size);

static int ListApplications(const char* unused, char* buffer, int size) {
  (void)unused;
  return IA_GetAppsJsonAll(NULL, buffer, size);
}

/* The whole answer, which the caller frees; null where memory runs out, or the answer keeps growing. A buffer
   that is too small costs the whole call once more, so the first one is large. */
static char* WholeAnswer(Call call, const char* argument) {
  int size = 4 << 20;
  for (int attempt = 0; attempt < 4; ++attempt) {
    char* const buffer = malloc((size_t)size);
    if (buffer == NULL) return NULL;
    const int length = call(argument, buffer, size);
    if (length < size) return buffer;
    free(buffer);
    size = length + 1;
  }
  return NULL;
}

static int PrintAnswer(Call call, const char* argument) {
  char* const answer = WholeAnswer(call, argument);
  if (answer == NULL) {
    fputs("no memory, or an answer that kept growing\n", stderr);
    return 1;
  }
  puts(answer);
  free(answer);
  return 0;
}

/* Runs on the library's thread, which waits for it: copy what you need and return. */
static void OnFocus(const char* fileName, uint32_t processId, const char* fullPath) {
  printf("%lu %s %s\n", (unsigned long)processId, fileName, fullPath);
  fflush(stdout);
}

static int Watch(const char* seconds) {
  SetFocusCallbackEx(OnFocus);
  StartFocusWatch(200);
  Sleep((DWORD)strtoul(seconds, NULL, 10) * 1000);
  StopFocusWatch();
  SetFocusCallbackEx(NULL);
  return 0;
}

int main(int count, char** arguments) {
  SetConsoleOutputCP(CP_UTF8);
  /* These arguments are in the ANSI code page. A host hands over UTF-8, so that a path may hold any letter.
   */
  if (count == 3 && strcmp(arguments[1], "scan") == 0)
    return PrintAnswer(IA_RunMultiPlatformGameScanJson, arguments[2]);
  if (count == 2 && strcmp(arguments[1], "apps") == 0) return PrintAnswer(ListApplications, NULL);
  if (count == 3 && strcmp(arguments[1], "watch") == 0) return Watch(arguments[2]);
  fputs("usage: example scan CATALOGUE | apps | watch SECONDS\n", stderr);
  return 2;
}
