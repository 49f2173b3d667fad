#pragma once
// The program's texts, in and out: UTF-8 everywhere, whatever the console's code page is. A console gets wide
// text, pipes and files get the bytes as they stand; lines end in one line feed.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "common/wide_text.h"

namespace tarnwick::host {

// The command line without the program's name.
std::vector<std::string> CommandLineArguments();

// Has written all of the text when it returns. Throws std::runtime_error where any of it is lost: a full
// disk, a reader that has gone.
void WriteStandardOutput(std::string_view text);

// Takes no memory and never throws: it is called on the library's threads, and where memory has run out. A
// text that can't be written there is lost.
void WriteStandardError(std::string_view text) noexcept;

// The columns that a line may fill on the terminal that the standard output or error is, or 0 where it is
// none: one less than the terminal has, because on some a line that fills the last column goes on to the
// next.
size_t TerminalWidth();
size_t ErrorTerminalWidth();

// Is the standard error a terminal that a person looks at?
bool StandardErrorIsTerminal();

// Writes to the file at `path`, or to the standard output if it is empty. Throws std::runtime_error naming
// what can't be written, and why.
void WriteResult(const std::string& path, const std::string& text);

// Malformed text has U+FFFD in place of what is wrong.
std::wstring Widen(const std::string& text);
using common::Narrow;

}  // namespace tarnwick::host
