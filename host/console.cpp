// The console of Windows.
#include "host/console.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>

namespace tarnwick::host {

ConsoleScope::ConsoleScope() : codePage_(GetConsoleOutputCP()) {
  SetConsoleOutputCP(CP_UTF8);
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
}

ConsoleScope::~ConsoleScope() {
  std::fflush(stdout);
  std::fflush(stderr);
  if (codePage_ != 0) SetConsoleOutputCP(codePage_);
}

std::vector<std::string> CommandLineArguments() {
  int count = 0;
  const std::unique_ptr<wchar_t*, decltype(&LocalFree)> texts(CommandLineToArgvW(GetCommandLineW(), &count),
                                                              LocalFree);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(Narrow(texts.get()[i]));
  return arguments;
}

void WriteStandardOutput(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
  std::fflush(stdout);
}

void WriteStandardError(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
  std::fflush(stderr);
}

size_t TerminalWidth() { return 0; }

bool StandardErrorIsTerminal() {
  DWORD mode = 0;
  return _isatty(_fileno(stderr)) != 0 && GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}

void WriteResult(const std::string& path, const std::string& text) {
  if (path.empty()) {
    WriteStandardOutput(text);
    return;
  }
  std::ofstream file(std::filesystem::path(Widen(path)), std::ios::binary);
  file << text;
  file.close();
  if (!file) throw std::runtime_error("can't write " + path);
}

std::string ReadFileBytes(const std::string& path) {
  std::ifstream file(std::filesystem::path(Widen(path)), std::ios::binary);
  if (!file) throw std::runtime_error("can't open " + path);
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return std::move(bytes).str();
}

std::wstring Widen(const std::string& text) {
  const int length = static_cast<int>(text.size());
  std::wstring wide(static_cast<size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0)),
                    L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), static_cast<int>(wide.size()));
  return wide;
}

std::string Narrow(const std::wstring& text) {
  const int length = static_cast<int>(text.size());
  std::string narrow(
      static_cast<size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr)),
      '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), length, narrow.data(), static_cast<int>(narrow.size()),
                      nullptr, nullptr);
  return narrow;
}

}  // namespace tarnwick::host
