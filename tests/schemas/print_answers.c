/*
 * A host that asks every export of the library that answers with JSON, and writes each answer to a file of
 * its own in a folder:
 *
 *   tarnwick_print_answers CATALOGUE EXECUTABLE REQUEST FOLDER
 *
 * REQUEST is the file of a lookup request. Ends with 0 if all answers are written.
 */
#include "tarnwick/tarnwick.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { kBufferBytes = 32 << 20 };

static char g_buffer[kBufferBytes];

static int WriteAnswer(const char* folder, const char* name, int length) {
  char path[1024];
  FILE* file;
  if (length < 0 || length >= kBufferBytes) return 0;
  snprintf(path, sizeof path, "%s\\%s.json", folder, name);
  file = fopen(path, "wb");
  if (file == NULL) return 0;
  const size_t written = fwrite(g_buffer, 1, (size_t)length, file);
  return fclose(file) == 0 && written == (size_t)length;
}

static char* ReadText(const char* path) {
  char* text = calloc(1, kBufferBytes);
  FILE* file = fopen(path, "rb");
  if (text == NULL || file == NULL) return text;
  text[fread(text, 1, kBufferBytes - 1, file)] = '\0';
  fclose(file);
  return text;
}

static int WriteGames(const char* catalogue, const char* executable, const char* folder) {
  return WriteAnswer(folder, "scan", IA_RunMultiPlatformGameScanJson(catalogue, g_buffer, kBufferBytes)) &&
         WriteAnswer(folder, "details", IA_GetGameDetailsByPathJson(executable, g_buffer, kBufferBytes)) &&
         WriteAnswer(folder, "details-none",
                     IA_GetGameDetailsByPathJson("C:\\no such file.exe", g_buffer, kBufferBytes));
}

static int WriteApplications(const char* folder) {
  return WriteAnswer(folder, "apps-page", IA_GetAppsJson(1, 5, NULL, g_buffer, kBufferBytes)) &&
         WriteAnswer(folder, "apps-none", IA_GetAppsJson(1000, 5, NULL, g_buffer, kBufferBytes)) &&
         WriteAnswer(folder, "apps-all", IA_GetAppsJsonAll(NULL, g_buffer, kBufferBytes));
}

static int WriteLookups(const char* request, const char* folder) {
  char* text = ReadText(request);
  const int written =
      WriteAnswer(folder, "find", IA_FindGamesJson(text, g_buffer, kBufferBytes)) &&
      WriteAnswer(folder, "find-by-file", IA_FindGamesByFile(request, g_buffer, kBufferBytes));
  free(text);
  return written;
}

int main(int count, char** arguments) {
  if (count != 5) {
    fprintf(stderr, "usage: %s CATALOGUE EXECUTABLE REQUEST FOLDER\n", arguments[0]);
    return 2;
  }
  const char* folder = arguments[4];
  const int written = WriteGames(arguments[1], arguments[2], folder) && WriteApplications(folder) &&
                      WriteLookups(arguments[3], folder);
  return written ? 0 : 1;
}
