#pragma once
// A machine that was captured: what a scan asked there and was told. Read from JSON (docs/desktop.md) and
// checked whole before the first thing of it is made.

#include "desktop/desktop.h"
#include "desktop/json_node.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick::desktop {

struct CapturedValue {
  std::string name;
  uint32_t type = 0;
  std::string bytes;
};

struct CapturedKey {
  std::string key;
  View view = View::kNative;
  std::vector<CapturedValue> values;
};

struct CapturedFolder {
  std::string path;
  bool refused = false;  // it can't be listed
  std::optional<int64_t> modified;
};

struct CapturedFile {
  std::string path;
  std::string bytes;
  uint64_t size = 0;  // padded with zeros up to this many bytes
  std::optional<int64_t> modified;
};

struct CapturedProgram {
  std::string path;
  bool isIconFile = false;
  ExecutableOptions options;
  std::optional<int64_t> modified;
};

// Paths and keys are tidy: see capture_rules.h.
struct Capture {
  std::map<std::string, std::string> knownFolders;
  std::map<std::string, std::string> environment;
  std::vector<CapturedKey> keys;
  std::vector<CapturedFolder> folders;
  std::vector<CapturedFile> files;
  std::vector<CapturedProgram> programs;
};

// A text is a captured machine if it has this member.
bool IsCapture(const Node& root);

// Throws JsonError, with the place in the text, for anything that is not allowed. Makes nothing.
Capture ReadCapture(const Node& root);

// Makes what was read.
void BuildCapture(Desktop& desktop, const Capture& capture);

}  // namespace tarnwick::desktop
