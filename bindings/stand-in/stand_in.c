/*
 * A library with Tarnwick's exports and fixed answers: the tests of the bindings load it, on Linux as well. The answers
 * are the files in bindings/golden (make-stand-in compiles them in) and follow the buffer contract of tarnwick.h.
 *
 * Wide texts are UTF-16 everywhere, as the real library takes them: make-stand-in compiles with a wchar_t of two bytes,
 * so that a binding has to hand over UTF-16 on Linux too.
 *
 * Some arguments ask for something else than the golden answer:
 * - Any text that begins with "echo:" is answered by one result whose "name" is that text as it arrived; of
 *   IA_GetAppsJson it has the page as "version" and the page's size as "sizeKB". In the request of IA_FindGamesJson and
 *   IA_FindGamesByFile's path the same.
 * - Scan path "cut": at every call 100 bytes more than the given buffer takes. "invalid": no whole JSON. "not-utf8": a
 *   JSON array with bytes that are no UTF-8. "large": one game, with an icon of 5 MiB. "counts": one game, whose name
 *   tells how often RunMultiPlatformGameScan and the path "cut" were called: "reports=1 cuts=4".
 * - A path "missing", an empty one, or none: "{}" of details, "[]" of IA_FindGamesByFile.
 * - A page behind the first, and the filter or request "nothing": "[]".
 *
 * The focus watch's first call has game.exe, 4242 and C:\Games\game.exe; each later one has the next process id. The
 * second one has empty texts, as of a process that can't be opened, and the third a name beyond ASCII; behind that it is
 * game.exe again.
 */
#ifdef _WIN32
#include <windows.h>
#else
#define _POSIX_C_SOURCE 200809L
#include <pthread.h>
#include <time.h>
#endif

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#define TARNWICK_BUILD
#include "golden.h"
#include "tarnwick/tarnwick.h"

/* ------ Threads: a few lines for each system. The thread runs WatchFocus until watching is 0. ------ */

static void WatchFocus(void);

#ifdef _WIN32
typedef HANDLE Thread;
typedef CRITICAL_SECTION Mutex;
static Mutex mutex;
static DWORD watchThreadId;
static void Lock(void) { EnterCriticalSection(&mutex); }
static void Unlock(void) { LeaveCriticalSection(&mutex); }
static void SleepFor(int milliseconds) { Sleep((DWORD)milliseconds); }
static DWORD WINAPI RunThread(void* unused) {
  (void)unused;
  WatchFocus();
  return 0;
}
static void StartThread(Thread* thread) {
  *thread = CreateThread(NULL, 0, RunThread, NULL, 0, &watchThreadId);
}
static void JoinThread(Thread thread) {
  WaitForSingleObject(thread, INFINITE);
  CloseHandle(thread);
}
static int IsThisThread(Thread thread) {
  (void)thread;
  return GetCurrentThreadId() == watchThreadId;
}
BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved) {
  (void)module;
  (void)reserved;
  if (reason == DLL_PROCESS_ATTACH) InitializeCriticalSection(&mutex);
  return TRUE;
}
#else
typedef pthread_t Thread;
static pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
static void Lock(void) { pthread_mutex_lock(&mutex); }
static void Unlock(void) { pthread_mutex_unlock(&mutex); }
static void SleepFor(int milliseconds) {
  struct timespec span;
  span.tv_sec = milliseconds / 1000;
  span.tv_nsec = (long)(milliseconds % 1000) * 1000000L;
  nanosleep(&span, NULL);
}
static void* RunThread(void* unused) {
  WatchFocus();
  return unused;
}
static void StartThread(Thread* thread) { pthread_create(thread, NULL, RunThread, NULL); }
static void JoinThread(Thread thread) { pthread_join(thread, NULL); }
static int IsThisThread(Thread thread) { return pthread_equal(thread, pthread_self()); }
#endif

/* ------ Answers ------ */

static const char Echo[] = "echo:";
static int reports = 0;
static int cuts = 0;

static int Same(const char* text, const char* other) { return text != NULL && strcmp(text, other) == 0; }

static int Begins(const char* text, const char* start) {
  return text != NULL && strncmp(text, start, strlen(start)) == 0;
}

static int IsNothing(const char* text) { return text == NULL || *text == '\0' || Same(text, "missing"); }

static int Answer(const char* text, char* buffer, int size) {
  const int length = (int)strlen(text);
  if (buffer != NULL && size >= 1) {
    const int fitting = length < size ? length : size - 1;
    memcpy(buffer, text, (size_t)fitting);
    buffer[fitting] = '\0';
  }
  return length;
}

/* Both return memory of their own; the caller frees it. */
static char* JsonEscaped(const char* text) {
  char* const escaped = malloc(2 * strlen(text) + 1);
  char* out = escaped;
  for (; *text != '\0'; ++text) {
    if (*text == '"' || *text == '\\') *out++ = '\\';
    *out++ = *text;
  }
  *out = '\0';
  return escaped;
}

static char* Utf8(const wchar_t* text) {
  size_t units = 0;
  while (text[units] != 0) ++units;
  unsigned char* const utf8 = malloc(3 * units + 1);
  unsigned char* out = utf8;
  for (size_t i = 0; i < units; ++i) {
    unsigned long code = text[i] & 0xFFFFu;
    if (code >= 0xD800 && code < 0xDC00 && i + 1 < units) {
      code = 0x10000 + ((code - 0xD800) << 10) + ((text[++i] & 0xFFFFu) - 0xDC00);
    }
    if (code < 0x80) {
      *out++ = (unsigned char)code;
      continue;
    }
    const int behind = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    const unsigned leads[] = {0, 0xC0, 0xE0, 0xF0};
    *out++ = (unsigned char)(leads[behind] | (code >> (6 * behind)));
    for (int k = behind - 1; k >= 0; --k) *out++ = (unsigned char)(0x80 | ((code >> (6 * k)) & 0x3F));
  }
  *out = '\0';
  return (char*)utf8;
}

/* `form` has one %s, for the escaped text. */
static int AnswerWithText(const char* form, const char* text, char* buffer, int size) {
  char* const escaped = JsonEscaped(text);
  char* const answer = malloc(strlen(form) + strlen(escaped) + 1);
  strcpy(answer, form);
  char* const place = strstr(answer, "%s");
  strcpy(place, escaped);
  strcat(answer, strstr(form, "%s") + 2);
  const int length = Answer(answer, buffer, size);
  free(answer);
  free(escaped);
  return length;
}

static int AnswerGame(const char* name, char* buffer, int size) {
  return AnswerWithText("[{\"name\":\"%s\",\"loc\":\"\",\"icon\":\"\",\"launchUrl\":\"\",\"exeName\":\"\"}]",
                        name, buffer, size);
}

static int AnswerApplication(const char* name, int page, int pageSize, char* buffer, int size) {
  char form[200];
  snprintf(form, sizeof form,
           "[{\"name\":\"%%s\",\"publisher\":\"\",\"version\":\"%d\",\"loc\":\"\",\"date\":\"\",\"sizeKB\":%"
           "d,\"icon\":\"\"}]",
           page, pageSize);
  return AnswerWithText(form, name, buffer, size);
}

static int AnswerCut(char* buffer, int size) {
  Lock();
  ++cuts;
  Unlock();
  if (buffer != NULL && size >= 1) {
    memset(buffer, ' ', (size_t)size);
    buffer[0] = '[';
    buffer[size - 1] = '\0';
  }
  return (size > 0 ? size : 0) + 100;
}

static int AnswerLarge(char* buffer, int size) {
  const size_t iconSize = 5u << 20;
  char* const icon = malloc(iconSize + 1);
  memset(icon, 'A', iconSize);
  icon[iconSize] = '\0';
  const int length = AnswerWithText(
      "[{\"name\":\"large\",\"loc\":\"\",\"icon\":\"%s\",\"launchUrl\":\"\",\"exeName\":\"\"}]", icon, buffer,
      size);
  free(icon);
  return length;
}

static int AnswerCounts(char* buffer, int size) {
  char counts[60];
  Lock();
  snprintf(counts, sizeof counts, "reports=%d cuts=%d", reports, cuts);
  Unlock();
  return AnswerGame(counts, buffer, size);
}

/* ------ Exports ------ */

int IA_RunMultiPlatformGameScanJson(const char* path, char* buffer, int size) {
  if (Same(path, "cut")) return AnswerCut(buffer, size);
  if (Same(path, "large")) return AnswerLarge(buffer, size);
  if (Same(path, "counts")) return AnswerCounts(buffer, size);
  if (Same(path, "invalid")) return Answer("[{\"name\":", buffer, size);
  if (Same(path, "not-utf8")) return Answer("[{\"name\":\"\xC3(\xFF\"}]", buffer, size);
  if (Begins(path, Echo)) return AnswerGame(path, buffer, size);
  return Answer(GoldenScan, buffer, size);
}

void RunMultiPlatformGameScan(void) {
  Lock();
  ++reports;
  Unlock();
}

int IA_GetGameDetailsByPathJson(const char* path, char* buffer, int size) {
  if (IsNothing(path)) return Answer("{}", buffer, size);
  if (!Begins(path, Echo)) return Answer(GoldenDetails, buffer, size);
  return AnswerWithText("{\"name\":\"%s\",\"ico\":\"\",\"exepath\":\"\",\"exe\":\"\"}", path, buffer, size);
}

#ifndef WITHOUT_REFRESH
int32_t IA_RefreshCache(void) { return 3; }
#endif

static int32_t AnswerFiltered(const wchar_t* filter, int page, int pageSize, const char* golden, char* out,
                              int32_t outSize) {
  char* const text = Utf8(filter != NULL ? filter : L"");
  int32_t length = 0;
  if (Begins(text, Echo)) {
    length = AnswerApplication(text, page, pageSize, out, outSize);
  } else {
    length = Answer(page > 1 || Same(text, "nothing") ? "[]" : golden, out, outSize);
  }
  free(text);
  return length;
}

int32_t IA_GetAppsJson(int32_t page, int32_t pageSize, const wchar_t* filter, char* out, int32_t outSize) {
  return AnswerFiltered(filter, page, pageSize, GoldenApps, out, outSize);
}

/* The echo lacks "exeName", so a binding sees what it makes of a member that isn't there. */
int32_t IA_GetAppsJsonAll(const wchar_t* filter, char* out, int32_t outSize) {
  return AnswerFiltered(filter, 1, 0, GoldenAppsAll, out, outSize);
}

int32_t IA_FindGamesJson(const char* queryJson, char* out, int32_t outSize) {
  if (queryJson == NULL || Same(queryJson, "[]")) return Answer("[]", out, outSize);
  if (strstr(queryJson, Echo) != NULL) return AnswerApplication(queryJson, 1, 0, out, outSize);
  return Answer(strstr(queryJson, "\"nothing\"") != NULL ? "[]" : GoldenFind, out, outSize);
}

int32_t IA_FindGamesByFile(const char* filePath, char* out, int32_t outSize) {
  if (IsNothing(filePath)) return Answer("[]", out, outSize);
  if (Begins(filePath, Echo)) return AnswerApplication(filePath, 1, 0, out, outSize);
  return Answer(GoldenFind, out, outSize);
}

/* ------ The focus watch. What follows is guarded by the mutex, but the thread itself: start and stop come from one
   thread at a time. ------ */

static TarnwickFocusCallback focusCallback = NULL;
static int watching = 0;
static int interval = 0;
static Thread watchThread;
static int watchThreadStands = 0; /* not joined yet */

static void CallBack(uint32_t processId) {
  Lock();
  const TarnwickFocusCallback callback = focusCallback;
  Unlock();
  if (callback == NULL) return;
  if (processId == 4243) {
    callback("", processId, "");
  } else if (processId == 4244) {
    callback("sp\xC3\xA4t \xF0\x9F\x8E\xAE.exe", processId,
             "C:\\\xE3\x82\xB2\xE3\x83\xBC\xE3\x83\xA0\\sp\xC3\xA4t \xF0\x9F\x8E\xAE.exe");
  } else {
    callback("game.exe", processId, "C:\\Games\\game.exe");
  }
}

static void WatchFocus(void) {
  for (uint32_t processId = 4242;; ++processId) {
    Lock();
    const int stays = watching;
    const int span = interval;
    Unlock();
    if (!stays) return;
    CallBack(processId);
    SleepFor(span);
  }
}

void SetFocusCallbackEx(TarnwickFocusCallback callback) {
  Lock();
  focusCallback = callback;
  Unlock();
}

static void SetWatching(int value) {
  Lock();
  watching = value;
  Unlock();
}

static void JoinWatch(void) {
  if (!watchThreadStands) return;
  JoinThread(watchThread);
  watchThreadStands = 0;
}

void StartFocusWatch(int32_t intervalMs) {
  const int inCallback = watchThreadStands && IsThisThread(watchThread);
  Lock();
  const int runs = watching;
  Unlock();
  if (runs) return;
  if (!inCallback) JoinWatch(); /* the one that a callback told to end */
  SetWatching(1);
  if (inCallback) return; /* takes the stop back */
  interval = intervalMs < 50 ? 200 : intervalMs;
  watchThreadStands = 1;
  StartThread(&watchThread);
}

void StopFocusWatch(void) {
  SetWatching(0);
  if (watchThreadStands && !IsThisThread(watchThread)) JoinWatch();
}
