#pragma once
// The program's texts, in and out: UTF-8 everywhere, whatever the console's code page was.

#include <cstddef>
#include <string>
#include <vector>

namespace tarnwick::host {

// Sets the console to UTF-8 and the streams to bytes, so that lines end in one line feed everywhere. The code
// page that the console had comes back when the object goes.
class ConsoleScope {
 public:
  ConsoleScope();
  ~ConsoleScope();
  ConsoleScope(const ConsoleScope&) = delete;
  ConsoleScope& operator=(const ConsoleScope&) = delete;

 private:
  unsigned int codePage_;
};

// The command line without the program's name.
std::vector<std::string> CommandLineArguments();

void WriteStandardOutput(const std::string& text);
void WriteStandardError(const std::string& text);

// The columns of the terminal that the standard output is, or 0 where it is none.
size_t TerminalWidth();

// Is the standard error a terminal that a person looks at?
bool StandardErrorIsTerminal();

// Writes to the file at `path`, or to the standard output if it is empty. Throws std::runtime_error naming
// the file.
void WriteResult(const std::string& path, const std::string& text);

std::string ReadFileBytes(const std::string& path);  // throws std::runtime_error naming the file

std::wstring Widen(const std::string& text);
std::string Narrow(const std::wstring& text);

}  // namespace tarnwick::host
