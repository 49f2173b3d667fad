/*
 * A host in plain C: includes the public header alone, links the import library and calls every export once.
 * Ends with 0 if each keeps its word, otherwise with the number of the check that failed.
 */
#include "tarnwick/tarnwick.h"

#include <stdio.h>
#include <string.h>

static int g_checks = 0;
static int g_failed = 0;

static void Check(int holds, const char* what) {
  ++g_checks;
  if (holds || g_failed != 0) return;
  g_failed = g_checks;
  fprintf(stderr, "failed: %s\n", what);
}

static void OnFocus(const char* fileName, uint32_t processId, const char* fullPath) {
  Check(fileName != NULL && fullPath != NULL && processId != 0, "the callback's arguments");
}

static void CheckGames(void) {
  static char buffer[64];
  const int scan =
      IA_RunMultiPlatformGameScanJson("C:\\TarnwickTest\\no such catalogue.xml", buffer, sizeof buffer);
  Check(scan == 2 && strcmp(buffer, "[]") == 0, "a scan without a catalogue");
  Check(IA_RunMultiPlatformGameScanJson(NULL, NULL, 0) == 2, "a scan without a buffer");
  RunMultiPlatformGameScan();
  const int details =
      IA_GetGameDetailsByPathJson("C:\\TarnwickTest\\no such game.exe", buffer, sizeof buffer);
  Check(details == 2 && strcmp(buffer, "{}") == 0, "details of a missing file");
}

static void CheckApplications(void) {
  static char buffer[64];
  Check(IA_RefreshCache() >= 0, "a refresh");
  Check(IA_GetAppsJson(1, 20, L"no application of this name", buffer, sizeof buffer) == 2, "a page");
  Check(IA_GetAppsJsonAll(L"no application of this name", buffer, sizeof buffer) == 2, "the whole list");
  Check(strcmp(buffer, "[]") == 0, "an empty list");
  Check(IA_FindGamesJson("[]", buffer, sizeof buffer) == 2, "a lookup of nothing");
  Check(IA_FindGamesByFile("C:\\TarnwickTest\\no such file.json", buffer, sizeof buffer) == 2,
        "a lookup by file");
}

static void CheckFocus(void) {
  TarnwickFocusCallback callback = OnFocus;
  SetFocusCallbackEx(callback);
  StartFocusWatch(50);
  StopFocusWatch();
  SetFocusCallbackEx(NULL);
}

int main(void) {
  CheckGames();
  CheckApplications();
  CheckFocus();
  puts("TARNWICK-TESTS-ENDED");
  return g_failed;
}
