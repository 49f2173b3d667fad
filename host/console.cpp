// The console of Windows.
#include "host/console.h"

#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <memory>
#include <stdexcept>

#include "host/output_file.h"

namespace tarnwick::host {
namespace {

bool IsConsole(HANDLE handle) {
  DWORD mode = 0;
  return GetConsoleMode(handle, &mode) != 0;
}

// The first of the text's bytes that one call shall write, whole characters only: a pair of surrogates that
// comes in two calls is shown as two characters that are none.
std::string_view FirstPiece(std::string_view text, size_t most) {
  if (text.size() <= most) return text;
  constexpr size_t kLongestCharacter = 4;
  for (size_t end = most; end + kLongestCharacter > most; --end) {
    if ((static_cast<unsigned char>(text[end]) & 0xC0) != 0x80) return text.substr(0, end);
  }
  return text.substr(0, most);
}

SystemError WriteToConsole(HANDLE console, std::string_view text) noexcept {
  constexpr size_t kPiece = 4096;
  wchar_t wide[kPiece];  // UTF-16 never has more units than UTF-8 has bytes
  while (!text.empty()) {
    const std::string_view piece = FirstPiece(text, kPiece);
    const int units =
        MultiByteToWideChar(CP_UTF8, 0, piece.data(), static_cast<int>(piece.size()), wide, kPiece);
    for (DWORD from = 0, written = 0; from < static_cast<DWORD>(units); from += written) {
      if (!WriteConsoleW(console, wide + from, static_cast<DWORD>(units) - from, &written, nullptr))
        return GetLastError();
      if (written == 0) return ERROR_WRITE_FAULT;
    }
    text.remove_prefix(piece.size());
  }
  return ERROR_SUCCESS;
}

SystemError WriteToStream(DWORD stream, std::string_view text) noexcept {
  const HANDLE handle = GetStdHandle(stream);
  if (handle == nullptr) return ERROR_INVALID_HANDLE;
  return IsConsole(handle) ? WriteToConsole(handle, text) : WriteBytes(handle, text);
}

size_t WidthOf(DWORD stream) {
  CONSOLE_SCREEN_BUFFER_INFO screen = {};
  if (!GetConsoleScreenBufferInfo(GetStdHandle(stream), &screen)) return 0;
  return static_cast<size_t>(std::max(screen.srWindow.Right - screen.srWindow.Left, 1));
}

}  // namespace

std::vector<std::string> CommandLineArguments() {
  int count = 0;
  const std::unique_ptr<wchar_t*, decltype(&LocalFree)> texts(CommandLineToArgvW(GetCommandLineW(), &count),
                                                              LocalFree);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(Narrow(texts.get()[i]));
  return arguments;
}

void WriteStandardOutput(std::string_view text) {
  const SystemError error = WriteToStream(STD_OUTPUT_HANDLE, text);
  if (error != ERROR_SUCCESS)
    throw std::runtime_error("can't write to the standard output: " + SystemErrorText(error));
}

void WriteStandardError(std::string_view text) noexcept { WriteToStream(STD_ERROR_HANDLE, text); }

size_t TerminalWidth() { return WidthOf(STD_OUTPUT_HANDLE); }

size_t ErrorTerminalWidth() { return WidthOf(STD_ERROR_HANDLE); }

bool StandardErrorIsTerminal() { return IsConsole(GetStdHandle(STD_ERROR_HANDLE)); }

void WriteResult(const std::string& path, const std::string& text) {
  if (path.empty()) {
    WriteStandardOutput(text);
  } else {
    OutputFile(path).Write(text);
  }
}

std::wstring Widen(const std::string& text) { return common::Wide(text, common::Malformed::kReplaced); }

}  // namespace tarnwick::host
