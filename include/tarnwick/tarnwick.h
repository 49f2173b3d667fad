#ifndef TARNWICK_TARNWICK_H
#define TARNWICK_TARNWICK_H

/*
 * Tarnwick: which games and applications are installed on this Windows desktop, and which process holds the
 * foreground. Compiles as C and as C++. Eleven functions, exported under their plain names; load them from
 * Tarnwick.dll at run time, by its full path, or link its import library. tarnwick.hpp does the former for
 * hosts in C++17. For 64-bit programs (x64) only; docs/hosting.md tells what others do, and all else that a
 * host should know.
 *
 * Texts. Narrow texts are UTF-8, zero-terminated, in both directions; wide texts are UTF-16. Paths may hold
 * any characters. The JSON answers are UTF-8 without blanks between their parts; non-ASCII characters stand
 * as they are, unescaped. An icon is a PNG inside the JSON as a data URI ("data:image/png;base64,..."), or an
 * empty text.
 *
 * Answers in buffers. The calls that answer with JSON take a buffer and its size in bytes, and return the
 * length of the whole text in bytes, without its terminating zero, whether or not it fitted:
 *   - A buffer that is not null, of size 1 or more, receives as many bytes of the text as fit in front of a
 *     terminating zero. The cut falls where it falls, inside an object or a multi-byte character too: a
 *     result of `size` or more means that the text was cut and is no valid JSON.
 *   - With a null buffer, or a size below 1, nothing is written. The work is done all the same, so asking
 *     for the length first costs the whole call, and so does a buffer that is too small. Icons make these
 *     texts large: some 45 KB for each object, 352 KB at most. 64 KB for each object that is expected, and
 *     4 MiB at least, is a good first size.
 *   - A failure is answered with an empty array or object, "[]" or "{}", and 2. There are no error codes: 2
 *     is also the answer of a machine that has nothing to report. What went wrong stands in the debug output
 *     (below). These two texts want a buffer of 3 bytes or more; a smaller one receives an empty text at
 *     most.
 * A text can grow between two calls: give up after a few. The library keeps no pointer to what it was given
 * behind the end of a call (but the focus callback), and hands out no memory that a host would have to free.
 *
 * Failures. No C++ exception leaves any of these functions. Structured exceptions are caught as well by
 * IA_RunMultiPlatformGameScanJson, IA_RefreshCache, IA_GetAppsJson, IA_GetAppsJsonAll, IA_FindGamesJson and
 * IA_FindGamesByFile; what such an exception interrupted isn't repaired. After one in a scan the API lock may
 * stay held, so that a later call waits for ever; the other five let go of their locks. Treat "CRITICAL SEH
 * ERROR" in the log as a reason to restart the host. Pointers must be null where that is allowed, or valid.
 *
 * Threads. Every function may be called on any thread, from several at once unless it says otherwise, but not
 * from a DllMain. COM is set up for the length of a call where the calling thread has not done so; a thread
 * that lives in a single-threaded apartment is fine. Two locks serialise calls, always taken in this order:
 *   - the API lock: IA_RunMultiPlatformGameScanJson, IA_RefreshCache and IA_GetAppsJsonAll run one at a time;
 *   - the cache lock: IA_RefreshCache and the four calls that read the list of applications (IA_GetAppsJson,
 *     IA_GetAppsJsonAll, IA_FindGamesJson, IA_FindGamesByFile) run one at a time, icons included.
 * RunMultiPlatformGameScan, IA_GetGameDetailsByPathJson and the focus watch take neither. No call can be
 * called off, and none has a time limit; a scan in a process of its own (tarnwick.exe) can be ended with it.
 *
 * The log is the Windows debug output (OutputDebugString), and nothing else: lines that begin "[Tarnwick".
 *
 * Loading starts no thread. Stop the focus watch, and let all calls return, before unloading.
 */

#include <stdint.h>
#include <wchar.h>

#include "version.h"

#if defined(_WIN32) && !defined(TARNWICK_BUILD)
#define TARNWICK_API __declspec(dllimport)
#else
#define TARNWICK_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ------ Games ------ */

/*
 * Finds the catalogue's games on this machine, and what the launchers hold, and answers with a JSON array;
 * see "Answers in buffers". Each element has these members, in this order, all of them texts:
 * - "name": display name
 * - "loc": full path of the executable, with backslashes; empty for a game that only launches by URI
 * - "icon": data URI of a PNG, or empty
 * - "launchUrl": URI that launches the game, such as "steam://run/620", or empty
 * - "exeName": file name of the executable, or empty
 *
 * `path` names the catalogue file. Null or empty stands for "MasterGameList_decrypted.xml" in the current
 * directory. Where the file doesn't exist, "MasterGameList.xml" in the current directory takes its place,
 * also for a path of the caller's own; only the log says so.
 *
 * "[]" and 2: no catalogue file, no record in it, nothing found, or a failure. The failure of a single way of
 * finding games never fails the scan: its results are missing, and the log says so.
 *
 * The call is synchronous, has no time limit and may take long: seconds, or minutes on slow disks. Don't call
 * it on a thread that serves windows. It works on threads of its own, all of which have ended when it
 * returns. Holds the API lock throughout.
 */
TARNWICK_API int IA_RunMultiPlatformGameScanJson(const char* path, char* buffer, int size);

/*
 * The same search as a readable report in the debug output, for diagnosis: takes "MasterGameList.xml" in the
 * current directory and nothing else, and writes what it finds, icons included. Takes as long as a scan.
 * Takes no lock, so it may run beside anything. It merges more simply than the scan, so the two may differ in
 * what counts as one game.
 */
TARNWICK_API void RunMultiPlatformGameScan(void);

/*
 * What a host can show for one executable that it knows of, without a scan. Answers with one JSON object; see
 * "Answers in buffers". Its members, in this order, all of them texts:
 * - "name": file description or product name of the version resource, else the file name without extension
 * - "ico": data URI of a PNG, or empty
 * - "exepath": the path, with backslashes
 * - "exe": the file name
 *
 * A path that doesn't exist and has two colons, as a game's title with a colon makes them, is also tried with
 * the second one replaced by U+FF1A and by an underscore; "exepath" is the path that was found.
 *
 * "{}" and 2: `path` is null or empty, the file doesn't exist, or a failure. Takes no lock.
 */
TARNWICK_API int IA_GetGameDetailsByPathJson(const char* path, char* buffer, int size);

/* ------ Installed applications ------ */

/*
 * The library keeps one list of the applications that the Uninstall keys describe, per process. The first of
 * the calls below that finds it empty fills it; after that only IA_RefreshCache does. Icons are loaded for
 * the applications that an answer shows, once between two refreshes, so that a first answer may take long and
 * later ones don't.
 *
 * The answers are JSON arrays; see "Answers in buffers". Each element has these members, in this order, all
 * texts but "sizeKB":
 * - "name", "publisher", "version"
 * - "loc": full path of the executable
 * - "exeName": file name of the executable; IA_GetAppsJsonAll alone writes it
 * - "date": install date, as the registry has it
 * - "sizeKB": estimated size in kilobytes, a number; 0 if unknown
 * - "icon": data URI of a PNG, or empty
 */

/*
 * Reads the list anew. Returns the number of applications, before any filter; 0 after a failure as well.
 * Holds both locks throughout.
 */
TARNWICK_API int32_t IA_RefreshCache(void);

/*
 * One page of the applications that have an executable. `page` counts from 1, and lower numbers mean 1; a
 * `pageSize` below 1 means 20. `filter` keeps the applications whose name or publisher contains it, without
 * regard to case; null or empty keeps all. A page behind the end is "[]" and 2. Holds the cache lock.
 */
TARNWICK_API int32_t IA_GetAppsJson(int32_t page, int32_t pageSize, const wchar_t* filter, char* out,
                                    int32_t outSize);

/*
 * All applications that have an executable, with the filter of IA_GetAppsJson. Loads every icon. An
 * application that fails is left out. Holds both locks.
 */
TARNWICK_API int32_t IA_GetAppsJsonAll(const wchar_t* filter, char* out, int32_t outSize);

/*
 * Looks given games up among the installed applications. `queryJson` is a flat list of objects with the texts
 * "name", "exeName" (required) and "exePath" (a folder below the install folder), such as
 *   [{"name":"Foo","exeName":"foo.exe","exePath":"bin"}]
 * Values are taken as they stand, without decoding escapes. For each object, in order, the first application
 * whose install folder holds the executable gives an element; an object without one gives nothing. Its "name"
 * is the object's, or the application's where that is empty. Null gives "[]" and 2. Holds the cache lock.
 */
TARNWICK_API int32_t IA_FindGamesJson(const char* queryJson, char* out, int32_t outSize);

/*
 * IA_FindGamesJson with the contents of a file. A file that is missing, empty or unreadable, or an empty
 * path, is "[]" and 2, or 0 and nothing written where the buffer is null or smaller than 3 bytes. `filePath`
 * must not be null. Holds the cache lock.
 */
TARNWICK_API int32_t IA_FindGamesByFile(const char* filePath, char* out, int32_t outSize);

/* ------ Foreground process ------ */

/*
 * Hears of a new foreground process: its executable's file name, its process id and the executable's full
 * path. The two texts are empty where the process can't be opened, such as an elevated one; they are never
 * null. They live until the callback returns: copy what you keep.
 *
 * Called on the watch's own thread, never by two threads at once, with no lock of the library held, so that
 * any function here may be called from it (for StopFocusWatch see there). It must not throw. While it runs,
 * changes of the foreground go unseen.
 */
typedef void (*TarnwickFocusCallback)(const char* fileName, uint32_t processId, const char* fullPath);

/*
 * Sets the function to call, before or after the start of the watch; null silences it. A function that is set
 * while the watch runs hears of the next change, not of the present process. The one that was set before may
 * still be running: its code must stay loaded until StopFocusWatch has returned.
 */
TARNWICK_API void SetFocusCallbackEx(TarnwickFocusCallback callback);

/*
 * Starts the thread that looks at the foreground window every `intervalMs` milliseconds (200 for values below
 * 50) and calls the callback when the process that owns it has changed, first of all with the present one.
 * Does nothing while the watch runs. Start and stop from one thread at a time.
 */
TARNWICK_API void StartFocusWatch(int32_t intervalMs);

/*
 * Stops the watch and waits for its thread: up to one interval and the running callback. Returns at once if
 * none runs. Neither the callback nor anything that it waits for may wait for the thread that is in this
 * call: both would wait for ever. From within the callback it only gives the order to end: the thread ends by
 * itself afterwards, and another thread must call StopFocusWatch once more before the next start and before
 * unloading.
 */
TARNWICK_API void StopFocusWatch(void);

#ifdef __cplusplus
}
#endif

#endif
