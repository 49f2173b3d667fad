#pragma once
// The library's questions to the machine for programs.

#include "common/heard_questions.h"

#include <nlohmann/json_fwd.hpp>

#include <vector>

namespace tarnwick::host {

// {"kind", "subject", "detail", "view", "answer", "ok"}: files are told by their size, and texts of the
// registry without the zeros at their end. Bytes that are no UTF-8 are left to whoever writes the JSON.
nlohmann::ordered_json QuestionJson(const common::Heard& heard);
nlohmann::ordered_json QuestionsJson(const std::vector<common::Heard>& heard);

}  // namespace tarnwick::host
