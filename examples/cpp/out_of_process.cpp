// A scan in a process of its own, with a time limit: for hosts that must be able to call it off, are 32-bit,
// or want nothing of a scan's memory and faults in their own process. Needs no header of Tarnwick's.
//
//   out_of_process TARNWICK.EXE CATALOGUE SECONDS
//
// Prints the games as JSON. Ends with 1 where the scan failed, with 3 where it took longer and was ended.
//
//   x86_64-w64-mingw32-g++-posix -std=c++17 -static -municode out_of_process.cpp -o out_of_process.exe

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

struct Closer {
  void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, Closer>;

// What is in the job ends with its last handle, so that a host that dies leaves no scan behind.
Handle EndingJob() {
  Handle job(CreateJobObjectW(nullptr, nullptr));
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
  return job;
}

// Without a console window. It runs once it is in the job.
Handle Start(std::wstring commandLine, HANDLE job) {
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process = {};
  if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE,
                      CREATE_SUSPENDED | CREATE_NO_WINDOW, nullptr, nullptr, &startup, &process)) {
    throw std::runtime_error("can't start tarnwick.exe (error " + std::to_string(GetLastError()) + ")");
  }
  const Handle thread(process.hThread);
  AssignProcessToJobObject(job, process.hProcess);
  ResumeThread(thread.get());
  return Handle(process.hProcess);
}

// The program's exit code, or 3 where it had to be ended.
DWORD RunFor(DWORD milliseconds, const std::wstring& commandLine) {
  const Handle job = EndingJob();
  const Handle process = Start(commandLine, job.get());
  if (WaitForSingleObject(process.get(), milliseconds) == WAIT_TIMEOUT) TerminateJobObject(job.get(), 3);
  WaitForSingleObject(process.get(), INFINITE);
  DWORD code = 1;
  GetExitCodeProcess(process.get(), &code);
  return code;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count != 4) {
    std::cerr << "usage: out_of_process TARNWICK.EXE CATALOGUE SECONDS\n";
    return 2;
  }
  try {
    // The answer goes to a file: a pipe that nobody empties would stop the program.
    const std::filesystem::path answer = std::filesystem::temp_directory_path() / L"tarnwick-games.json";
    const std::wstring commandLine = L"\"" + std::wstring(arguments[1]) + L"\" scan \"" + arguments[2] +
                                     L"\" --format json -o \"" + answer.wstring() + L"\"";
    const DWORD code = RunFor(static_cast<DWORD>(std::stoul(arguments[3])) * 1000, commandLine);
    if (code == 0) std::cout << std::ifstream(answer, std::ios::binary).rdbuf();
    std::error_code ignored;
    std::filesystem::remove(answer, ignored);
    return static_cast<int>(code);
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
