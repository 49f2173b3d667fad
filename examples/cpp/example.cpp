// Tarnwick in C++17: what is installed on this machine, and what is in the foreground.
//
//   example scan CATALOGUE    the games, as one line of JSON
//   example apps              the installed applications, as one line of JSON
//   example watch SECONDS     a line for each process that comes to the foreground
//
// Compile it with mingw-w64, where `include` is the package's folder, and put Tarnwick.dll beside it; there
// is nothing to link:
//
//   x86_64-w64-mingw32-g++-posix -std=c++17 -static -I include example.cpp -o example.exe

#include <iostream>
#include <string>

#include "tarnwick/tarnwick.hpp"

namespace {

// Runs on a thread of the library's, which waits for it.
void OnFocus(const tarnwick::ForegroundProcess& process) {
  std::cout << process.processId << ' ' << process.fileName << ' ' << process.fullPath << std::endl;
}

void Watch(const tarnwick::Library& library, const std::string& seconds) {
  const tarnwick::FocusWatch watch(library, OnFocus);
  Sleep(static_cast<DWORD>(std::stoul(seconds)) * 1000);
}

// False where the arguments are none of those above. They are in the ANSI code page: a host hands over UTF-8,
// so that a path may hold any letter.
bool Run(const tarnwick::Library& library, const std::string& command, const std::string& argument) {
  if (command == "scan" && !argument.empty())
    std::cout << library.Scan(argument) << '\n';
  else if (command == "apps" && argument.empty())
    std::cout << library.AllApplications() << '\n';
  else if (command == "watch" && !argument.empty())
    Watch(library, argument);
  else
    return false;
  return true;
}

}  // namespace

int main(int count, char** arguments) {
  SetConsoleOutputCP(CP_UTF8);
  try {
    const tarnwick::Library library(tarnwick::PathBesideProgram());
    if (Run(library, count > 1 ? arguments[1] : "", count > 2 ? arguments[2] : "")) return 0;
    std::cerr << "usage: example scan CATALOGUE | apps | watch SECONDS\n";
    return 2;
  } catch (const std::exception& error) {  // tarnwick::Error says what to do
    std::cerr << error.what() << '\n';
    return 1;
  }
}
