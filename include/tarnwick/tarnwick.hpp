#ifndef TARNWICK_TARNWICK_HPP
#define TARNWICK_TARNWICK_HPP

// Tarnwick for hosts in C++17: loads Tarnwick.dll at run time, without its import library, hands its answers
// over as std::string, and watches the foreground with an object that stops in its destructor. Needs
// tarnwick.h beside it, the standard library and windows.h, and nothing to link.
//
//   const tarnwick::Library library(tarnwick::PathBesideProgram());
//   const std::string games = library.Scan("C:\\Host\\MasterGameList.xml");
//
// Texts are UTF-8, in both directions; paths of the library itself are wide. Answers are JSON, whose shapes
// tarnwick.h tells and docs/schemas describes. This header doesn't parse it.
//
// What goes wrong in loading and calling is thrown as tarnwick::Error. What goes wrong in the library itself
// is an empty list or object, as tarnwick.h tells. Besides, std::bad_alloc where memory runs out.
//
// Includes windows.h without its `min` and `max` and its rarer parts; a host that wants those includes it
// first.

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <limits>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

#include "tarnwick.h"

namespace tarnwick {

enum class Fault {
  kNoFullPath,     // the path of the library isn't a full one
  kMissing,        // there is no file at the path
  kWrongKind,      // the file is made for another word size or processor, or is no library
  kNotLoaded,      // Windows can't load it for another reason, whose number the text has
  kMissingExport,  // the library lacks a function of tarnwick.h, which the text names
  kKeptGrowing,    // the answer was longer than the buffer at each of kAttempts calls
  kTooLong,        // the answer is longer than a buffer can be (2 GiB)
  kClosed,         // the Library was closed
  kWatchRunning    // another FocusWatch is there
};

// Its text, in UTF-8, is for people and says what to do.
class Error : public std::runtime_error {
 public:
  Error(Fault fault, const std::string& text) : std::runtime_error(text), fault_(fault) {}
  Fault Kind() const noexcept { return fault_; }

 private:
  Fault fault_;
};

// The eleven exports as tarnwick.h declares them.
struct Functions {
  decltype(&::IA_RunMultiPlatformGameScanJson) IA_RunMultiPlatformGameScanJson = nullptr;
  decltype(&::RunMultiPlatformGameScan) RunMultiPlatformGameScan = nullptr;
  decltype(&::IA_GetGameDetailsByPathJson) IA_GetGameDetailsByPathJson = nullptr;
  decltype(&::IA_RefreshCache) IA_RefreshCache = nullptr;
  decltype(&::IA_GetAppsJson) IA_GetAppsJson = nullptr;
  decltype(&::IA_GetAppsJsonAll) IA_GetAppsJsonAll = nullptr;
  decltype(&::IA_FindGamesJson) IA_FindGamesJson = nullptr;
  decltype(&::IA_FindGamesByFile) IA_FindGamesByFile = nullptr;
  decltype(&::SetFocusCallbackEx) SetFocusCallbackEx = nullptr;
  decltype(&::StartFocusWatch) StartFocusWatch = nullptr;
  decltype(&::StopFocusWatch) StopFocusWatch = nullptr;
};

namespace detail {

inline std::string Utf8(const std::wstring& text) {
  const int units = static_cast<int>(text.size());
  const int bytes = WideCharToMultiByte(CP_UTF8, 0, text.data(), units, nullptr, 0, nullptr, nullptr);
  std::string narrow(static_cast<std::size_t>(bytes), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), units, narrow.data(), bytes, nullptr, nullptr);
  return narrow;
}

// What isn't UTF-8 becomes U+FFFD.
inline std::wstring Wide(const std::string& text) {
  const int bytes = static_cast<int>(text.size());
  const int units = MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(units), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, wide.data(), units);
  return wide;
}

inline bool IsFullPath(const std::wstring& path) {
  const bool drive = path.size() > 3 && path[1] == L':' && path[2] == L'\\';
  return drive || path.compare(0, 2, L"\\\\") == 0;
}

struct Unload {
  void operator()(HMODULE module) const noexcept { FreeLibrary(module); }
};
using ModuleHandle = std::unique_ptr<std::remove_pointer_t<HMODULE>, Unload>;

// A loaded library, until the last of its sharers lets go.
struct Module {
  ModuleHandle handle;
  Functions functions;
};

inline Error LoadError(const std::wstring& path, DWORD code) {
  const std::string name = Utf8(path) + ": ";
  if (code == ERROR_BAD_EXE_FORMAT) {
    return {Fault::kWrongKind, name + "this " + std::to_string(sizeof(void*) * 8) +
                                   "-bit program can't load it: it is made for another word size or "
                                   "processor, or is no library. Tarnwick.dll is for 64-bit programs (x64); "
                                   "others run tarnwick.exe and read what it prints"};
  }
  if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES)
    return {Fault::kMissing,
            name + "there is no such file; Tarnwick.dll must stand there, or be loaded from where it does"};
  return {Fault::kNotLoaded, name + "Windows can't load it (error " + std::to_string(code) + ")"};
}

// Nothing but the file itself comes from its folder: what it imports is Windows' own.
inline ModuleHandle LoadFile(const std::wstring& path) {
  ModuleHandle handle(LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32));
  if (handle == nullptr) throw LoadError(path, GetLastError());
  return handle;
}

template <class Function>
void Find(HMODULE module, const char* name, Function& function) {
  const FARPROC found = GetProcAddress(module, name);
  if (found == nullptr)
    throw Error(Fault::kMissingExport,
                std::string("the library exports no ") + name +
                    "; it is of another version than this program, or no Tarnwick.dll");
  function = reinterpret_cast<Function>(reinterpret_cast<void*>(found));
}

inline Functions FindAll(HMODULE module) {
  Functions all;
  Find(module, "IA_RunMultiPlatformGameScanJson", all.IA_RunMultiPlatformGameScanJson);
  Find(module, "RunMultiPlatformGameScan", all.RunMultiPlatformGameScan);
  Find(module, "IA_GetGameDetailsByPathJson", all.IA_GetGameDetailsByPathJson);
  Find(module, "IA_RefreshCache", all.IA_RefreshCache);
  Find(module, "IA_GetAppsJson", all.IA_GetAppsJson);
  Find(module, "IA_GetAppsJsonAll", all.IA_GetAppsJsonAll);
  Find(module, "IA_FindGamesJson", all.IA_FindGamesJson);
  Find(module, "IA_FindGamesByFile", all.IA_FindGamesByFile);
  Find(module, "SetFocusCallbackEx", all.SetFocusCallbackEx);
  Find(module, "StartFocusWatch", all.StartFocusWatch);
  Find(module, "StopFocusWatch", all.StopFocusWatch);
  return all;
}

inline std::shared_ptr<const Module> Load(std::wstring path) {
  for (wchar_t& unit : path) {
    if (unit == L'/') unit = L'\\';
  }
  if (!IsFullPath(path)) {
    throw Error(Fault::kNoFullPath,
                Utf8(path) +
                    ": a full path is wanted, such as C:\\Program Files\\Host\\Tarnwick.dll: "
                    "a bare name would be looked for in folders that others may write");
  }
  ModuleHandle handle = LoadFile(path);
  const Functions functions = FindAll(handle.get());
  return std::make_shared<const Module>(Module{std::move(handle), functions});
}

}  // namespace detail

// The full path of a file in the folder of this process's program: for hosts that ship Tarnwick.dll beside
// their own executable.
inline std::wstring PathBesideProgram(const std::wstring& fileName = L"Tarnwick.dll") {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path.substr(0, path.find_last_of(L'\\') + 1) + fileName;
    }
    path.resize(path.size() * 2);
  }
}

// Room for some 90 games with icons of 45 KB. A call whose answer doesn't fit does all of its work once more.
inline constexpr std::size_t kFirstBufferBytes = std::size_t{4} << 20;
inline constexpr int kAttempts = 4;

// Calls `fill(buffer, size)`, an export that answers by tarnwick.h's "Answers in buffers", until its answer
// fits: first with kFirstBufferBytes, then with room for the length that it returned. An answer can grow
// between two calls. Throws kKeptGrowing where that happens kAttempts times on end, or kTooLong.
template <class Fill>
std::string WholeAnswer(const Fill& fill) {
  std::size_t size = kFirstBufferBytes;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    std::string text(size, '\0');
    const int length = fill(text.data(), static_cast<int>(size));
    if (length < 0 || length == std::numeric_limits<int>::max())
      throw Error(Fault::kTooLong, "the answer is longer than a buffer can be");
    if (static_cast<std::size_t>(length) < size) {
      text.resize(static_cast<std::size_t>(length));
      text.shrink_to_fit();
      return text;
    }
    size = static_cast<std::size_t>(length) + 1;
  }
  throw Error(Fault::kKeptGrowing, "the answer kept growing: it was longer than the buffer at each of " +
                                       std::to_string(kAttempts) + " calls; try again later");
}

// Tarnwick.dll, loaded. Copies share it, and it is unloaded with the last of them and of their watches. A
// call may come from any thread, from several at once too; tarnwick.h tells which of them wait for each
// other. Close is for the one thread that uses this copy. Make no Library, and let none go, in a DllMain.
class Library {
 public:
  // `path` is a full one; see PathBesideProgram. Throws kNoFullPath, kMissing, kWrongKind, kNotLoaded or
  // kMissingExport.
  explicit Library(const std::wstring& path) : module_(detail::Load(path)) {}

  // Lets go of the library: every later call on this copy throws kClosed. No call on it may be under way.
  void Close() noexcept { module_.reset(); }
  bool IsOpen() const noexcept { return module_ != nullptr; }

  // The installed games of a catalogue, and what the launchers report by themselves: an array of objects with
  // the texts "name", "loc", "icon", "launchUrl" and "exeName". Empty stands for MasterGameList_decrypted.xml
  // or MasterGameList.xml in the current directory. Takes seconds, or minutes; runs alone; can't be called
  // off.
  std::string Scan(const std::string& catalogue = {}) const {
    return Answer(Exports().IA_RunMultiPlatformGameScanJson, catalogue.c_str());
  }

  // The search as a report in the debug output, by MasterGameList.xml in the current directory.
  void Report() const { Exports().RunMultiPlatformGameScan(); }

  // One executable: an object with the texts "name", "ico", "exepath" and "exe"; empty where there is no
  // file.
  std::string GameDetails(const std::string& executable) const {
    return Answer(Exports().IA_GetGameDetailsByPathJson, executable.c_str());
  }

  // Reads the list of installed applications anew. How many there are; 0 after a failure too.
  std::int32_t Refresh() const { return Exports().IA_RefreshCache(); }

  // A page of the installed applications, counted from 1: an array of objects with the texts "name",
  // "publisher", "version", "loc", "date" and "icon", and the number "sizeKB" in kilobytes. `filter` is part
  // of a name or publisher, in any letter case; empty keeps all.
  std::string Applications(std::int32_t page, std::int32_t pageSize, const std::string& filter = {}) const {
    return Answer(Exports().IA_GetAppsJson, page, pageSize, detail::Wide(filter).c_str());
  }

  // All of them, whose objects have the text "exeName" too. Loads every icon.
  std::string AllApplications(const std::string& filter = {}) const {
    return Answer(Exports().IA_GetAppsJsonAll, detail::Wide(filter).c_str());
  }

  // Given games, looked up among the applications. `request` is such as
  // [{"name":"Foo","exeName":"foo.exe","exePath":"bin"}]; the answer has the form of Applications, and one
  // object for each game that was found.
  std::string FindGames(const std::string& request) const {
    return Answer(Exports().IA_FindGamesJson, request.c_str());
  }

  // FindGames with what stands in a file. An empty array where it is missing.
  std::string FindGamesInFile(const std::string& path) const {
    return Answer(Exports().IA_FindGamesByFile, path.c_str());
  }

  // The exports themselves, for what isn't above; valid while a copy is open. Throws kClosed.
  const Functions& Exports() const { return Opened()->functions; }

 private:
  friend class FocusWatch;

  const std::shared_ptr<const detail::Module>& Opened() const {
    if (module_ == nullptr) throw Error(Fault::kClosed, "the library was closed; load it again");
    return module_;
  }

  template <class Export, class... Arguments>
  static std::string Answer(Export function, Arguments... arguments) {
    return WholeAnswer([&](char* buffer, int size) { return function(arguments..., buffer, size); });
  }

  std::shared_ptr<const detail::Module> module_;
};

// The process that came to the foreground. Both texts are empty where it can't be opened, such as an elevated
// one.
struct ForegroundProcess {
  std::string fileName;
  std::uint32_t processId = 0;
  std::string fullPath;
};

using FocusHandler = std::function<void(const ForegroundProcess&)>;

namespace detail {

struct Watch {
  std::shared_ptr<const Module> module;  // null when the watch has ended
  FocusHandler handler;
  std::exception_ptr failure;           // guarded by the slot's mutex
  std::atomic<bool> silenced{false};    // the handler isn't called any more
  std::atomic<bool> abandoned{false};   // its FocusWatch is gone, its thread perhaps not
  std::atomic<DWORD> handlerThread{0};  // the one that the handler runs on at present

  Watch(std::shared_ptr<const Module> its, FocusHandler calls)
      : module(std::move(its)), handler(std::move(calls)) {}
  bool IsInHandler() const noexcept { return handlerThread == GetCurrentThreadId(); }
};

// The library's callback takes no context, so that there is one place for the watch.
struct WatchSlot {
  std::mutex mutex;
  std::shared_ptr<Watch> watch;
};

// Never destroyed: the watch's thread may run while the process ends.
inline WatchSlot& TheSlot() {
  static auto* const slot = new WatchSlot;
  return *slot;
}

inline std::shared_ptr<Watch> CurrentWatch() {
  const std::lock_guard<std::mutex> lock(TheSlot().mutex);
  return TheSlot().watch;
}

inline void KeepFailure(Watch& watch) noexcept {
  watch.silenced = true;
  const std::lock_guard<std::mutex> lock(TheSlot().mutex);
  watch.failure = std::current_exception();
}

// Called by the library. No exception may reach it.
inline void OnFocus(const char* fileName, std::uint32_t processId, const char* fullPath) noexcept {
  const std::shared_ptr<Watch> watch = CurrentWatch();
  if (watch == nullptr || watch->silenced) return;
  watch->handlerThread = GetCurrentThreadId();
  try {
    watch->handler({fileName, processId, fullPath});
  } catch (...) {
    KeepFailure(*watch);
  }
  watch->handlerThread = 0;
}

// Puts the watch into the slot, and gives back the abandoned one that stood there.
inline std::shared_ptr<Watch> Occupy(const std::shared_ptr<Watch>& watch) {
  const std::lock_guard<std::mutex> lock(TheSlot().mutex);
  std::shared_ptr<Watch>& place = TheSlot().watch;
  if (place != nullptr && (!place->abandoned || place->IsInHandler())) {
    throw Error(Fault::kWatchRunning,
                "there is a focus watch already, and one process has one; stop that one first, outside of "
                "its handler");
  }
  return std::exchange(place, watch);
}

inline void Vacate(const Watch* watch) noexcept {
  const std::lock_guard<std::mutex> lock(TheSlot().mutex);
  if (TheSlot().watch.get() == watch) TheSlot().watch.reset();
}

}  // namespace detail

// Calls a handler with each process that comes to the foreground, first with the present one, from
// construction to Stop or destruction. Keeps the library loaded for that time. There is one at a time in a
// process.
//
// The handler runs on a thread of the library's, never twice at once, from before the constructor returns. It
// may call any function of Library. What it throws ends there: it isn't called again, and Failure has the
// exception. Changes of the foreground go unseen while it runs.
//
// Stop and the destructor wait for a handler that is running. So the handler must not wait for the thread
// that stops: not by a lock that this thread holds, and not by a message or a task that it has yet to serve.
class FocusWatch {
 public:
  // Looks at the foreground every `intervalMs` milliseconds; below 50 it is every 200. Throws kClosed, or
  // kWatchRunning while another FocusWatch is there.
  FocusWatch(const Library& library, FocusHandler handler, std::int32_t intervalMs = 200)
      : watch_(std::make_shared<detail::Watch>(library.Opened(), std::move(handler))) {
    if (const auto previous = detail::Occupy(watch_)) previous->module->functions.StopFocusWatch();
    watch_->module->functions.SetFocusCallbackEx(detail::OnFocus);
    watch_->module->functions.StartFocusWatch(intervalMs);
  }

  // Stops. Within the handler it can't wait for the thread: the library stays loaded then until another
  // FocusWatch is made, or the process ends.
  ~FocusWatch() {
    Stop();
    if (watch_->module != nullptr) watch_->abandoned = true;
  }
  FocusWatch(const FocusWatch&) = delete;
  FocusWatch& operator=(const FocusWatch&) = delete;

  // The handler isn't called any more when this returns: up to one interval and the running handler later.
  // Within the handler it returns at once, the handler isn't called again, and the library logs that it
  // couldn't wait; the destructor, or Stop on another thread, does that. For one thread at a time.
  void Stop() noexcept {
    if (watch_->module == nullptr) return;
    watch_->silenced = true;
    watch_->module->functions.StopFocusWatch();
    if (watch_->IsInHandler()) return;
    watch_->module->functions.SetFocusCallbackEx(nullptr);
    detail::Vacate(watch_.get());
    watch_->module.reset();
  }

  // What the handler threw, or null.
  std::exception_ptr Failure() const {
    const std::lock_guard<std::mutex> lock(detail::TheSlot().mutex);
    return watch_->failure;
  }

 private:
  std::shared_ptr<detail::Watch> watch_;
};

}  // namespace tarnwick

#endif
