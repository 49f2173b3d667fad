#pragma once
// The library's questions to the machine, and what came of them, in words for people.

#include "common/heard_questions.h"

#include <string>

namespace tarnwick::host {

// "read value InstallLocation of HKEY_...", "attributes of C:\Games\x.exe".
std::string QuestionInWords(const Question& question);

// What a question that got nothing says: "key HKEY_... has no value InstallLocation", "C:\Games\x.exe doesn't
// exist".
std::string MissInWords(const common::Heard& heard);

// What came, in one line that is never longer than `most` characters: long texts are cut and files told by
// their size.
std::string AnswerInWords(const common::Heard& heard, size_t most = 120);

}  // namespace tarnwick::host
