#pragma once
// Which icon is taken and where it comes from, told from the questions that the library's icon code asked.

#include "common/heard_questions.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

namespace tarnwick::host {

struct IconCandidate {
  std::string path;
  double score = 0;  // by the library's IconScore
};

struct IconExplanation {
  bool asked = false;                     // false: nobody wanted an icon
  std::string file;                       // whose icon it is, or kGenericApplication; empty if there is none
  std::string call;                       // the call that gave it
  std::vector<std::string> searched;      // the folders that were searched for an executable, in order
  std::vector<IconCandidate> candidates;  // the executables in them
  std::string winner;                     // the one whose icon was then asked for; empty if there is none
  std::vector<common::Heard> misses;      // the calls and folders that gave nothing
};

IconExplanation ExplainIcon(const std::vector<common::Heard>& heard);

// Lines with line feeds, each indented by two blanks; nothing if nobody asked.
std::string IconExplanationText(const IconExplanation& icon);

// {"file", "call", "searched", "candidates": [{"path", "score", "taken"}], "misses"}, or null.
nlohmann::ordered_json IconExplanationJson(const IconExplanation& icon);

}  // namespace tarnwick::host
