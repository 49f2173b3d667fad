#include "support/process.h"

#include "common/wide_text.h"
#include "foundation/windows_api.h"

#include <future>
#include <stdexcept>

namespace tarnwick::tests {
namespace {

using common::Narrow;
using common::Wide;

// By the rules that CommandLineToArgvW undoes: backslashes count only before a quote.
std::wstring Quoted(const std::string& argument) {
  std::string quoted = "\"";
  size_t backslashes = 0;
  for (const char byte : argument) {
    if (byte == '\\') {
      ++backslashes;
      continue;
    }
    quoted.append(byte == '"' ? backslashes * 2 + 1 : backslashes, '\\');
    backslashes = 0;
    quoted += byte;
  }
  return Wide(quoted.append(backslashes * 2, '\\') + '"');
}

struct Pipe {
  HANDLE read = nullptr;
  HANDLE write = nullptr;

  Pipe() {
    SECURITY_ATTRIBUTES inheritable = {sizeof(inheritable), nullptr, TRUE};
    if (!CreatePipe(&read, &write, &inheritable, 0)) throw std::runtime_error("can't make a pipe");
    SetHandleInformation(read, HANDLE_FLAG_INHERIT, 0);
  }
};

std::string ReadToEnd(HANDLE pipe) {
  std::string text;
  char buffer[65536];
  for (DWORD count = 0; ReadFile(pipe, buffer, sizeof(buffer), &count, nullptr) && count > 0;)
    text.append(buffer, count);
  CloseHandle(pipe);
  return text;
}

}  // namespace

std::string TestProgramFolder() {
  wchar_t path[1024] = {};
  GetModuleFileNameW(nullptr, path, 1024);
  const std::string program = Narrow(path);
  return program.substr(0, program.find_last_of('\\') + 1);
}

ProgramResult RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                         const std::string& folder) {
  // Wine's shell, which the first program to ask for the desktop starts, inherits that program's pipes and
  // keeps them open. So the desktop is asked for before there are any.
  GetDesktopWindow();
  const bool isPath = program.find('\\') != std::string::npos;
  std::wstring commandLine = Quoted(isPath ? program : TestProgramFolder() + program);
  for (const std::string& argument : arguments) commandLine += L' ' + Quoted(argument);
  Pipe output;
  Pipe errors;
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = output.write;
  startup.hStdError = errors.write;
  PROCESS_INFORMATION process = {};
  if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr,
                      folder.empty() ? nullptr : Wide(folder).c_str(), &startup, &process)) {
    throw std::runtime_error("can't start " + program);
  }
  CloseHandle(output.write);
  CloseHandle(errors.write);
  auto errorText = std::async(std::launch::async, ReadToEnd, errors.read);
  auto outputText = std::async(std::launch::async, ReadToEnd, output.read);
  const bool ended = WaitForSingleObject(process.hProcess, 60000) == WAIT_OBJECT_0;
  if (!ended) TerminateProcess(process.hProcess, 99);
  ProgramResult result;
  result.output = outputText.get();
  result.errors = errorText.get();
  DWORD exitCode = 0;
  GetExitCodeProcess(process.hProcess, &exitCode);
  result.exitCode = exitCode;
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  if (!ended) throw std::runtime_error(program + " did not end within a minute");
  return result;
}

}  // namespace tarnwick::tests
