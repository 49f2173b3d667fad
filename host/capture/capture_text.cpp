#include "host/capture/capture_text.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

#include "common/wide_text.h"
#include "foundation/text.h"
#include "tarnwick/version.h"

namespace tarnwick::host {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kCaptureVersion = 1;

std::string Base64(const std::string& bytes) {
  return Base64Encode(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

std::string Hex(const std::string& bytes) {
  std::string text;
  for (const char byte : bytes)
    fmt::format_to(std::back_inserter(text), "{:02x}", static_cast<unsigned char>(byte));
  return text;
}

bool IsText(const std::string& bytes) {
  return bytes.find('\0') == std::string::npos &&
         common::Narrow(common::Wide(bytes, common::Malformed::kReplaced)) == bytes;
}

const char* ViewText(RegistryView view) {
  if (view == RegistryView::k64) return "64";
  return view == RegistryView::k32 ? "32" : "native";
}

Json JsonOf(const ValueCopy& value);
Json JsonOf(const KeyCopy& key);
Json JsonOf(const FolderCopy& folder);
Json JsonOf(const DataCopy& data);
Json JsonOf(const VersionCopy& version);
Json JsonOf(const IconPicture& picture);
Json JsonOf(const IconPictures& pictures);
Json JsonOf(const ProgramCopy& program);

template <class Copies>
Json ListOf(const Copies& copies) {
  Json list = Json::array();
  for (const auto& copy : copies) list.push_back(JsonOf(copy));
  return list;
}

Json JsonOf(const ValueCopy& value) {
  Json json = {{"name", value.name}, {"type", value.type}};
  if (value.text)
    json["text"] = *value.text;
  else if (value.number)
    json["number"] = *value.number;
  else
    json["hex"] = Hex(value.bytes);
  return json;
}

Json JsonOf(const KeyCopy& key) {
  return {{"key", key.key}, {"view", ViewText(key.view)}, {"values", ListOf(key.values)}};
}

Json JsonOf(const FolderCopy& folder) {
  Json json = {{"path", folder.path}};
  if (folder.refused) json["refused"] = true;
  return json;
}

Json JsonOf(const DataCopy& data) {
  Json json = {{"path", data.path}};
  const bool text = !data.cut && IsText(data.bytes);
  json[text ? "text" : "base64"] = text ? data.bytes : Base64(data.bytes);
  if (data.cut) {
    json["cut"] = true;
    json["size"] = data.size;
  }
  if (data.modified) json["modified"] = *data.modified;
  return json;
}

Json JsonOf(const VersionCopy& version) {
  return {{"language", version.language}, {"codePage", version.codePage}, {"values", version.values}};
}

Json JsonOf(const IconPicture& picture) { return {{"size", picture.size}, {"png", Base64(picture.png)}}; }

Json JsonOf(const IconPictures& pictures) {
  Json images = Json::array();
  for (const IconPicture& picture : pictures) images.push_back(JsonOf(picture));
  return {{"images", std::move(images)}};
}

Json JsonOf(const ProgramCopy& program) {
  Json json = {{"path", program.path}};
  if (program.iconFile) json["kind"] = "icon";
  json["size"] = program.size;
  json["versions"] = ListOf(program.versions);
  json["icons"] = ListOf(program.icons);
  if (program.modified) json["modified"] = *program.modified;
  return json;
}

Json HeadOf(const MachineCopy& machine) {
  return {{"version", kCaptureVersion},         {"tarnwick", TARNWICK_VERSION},
          {"catalogue", machine.catalogue},     {"knownFolders", machine.knownFolders},
          {"environment", machine.environment}, {"drives", machine.drives}};
}

std::string Dumped(const Json& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace); }

// Each item of a list has a line of its own, and each member of the outermost object and of objects right in
// it; what else is in an item stays on its line.
void Print(const Json& json, size_t depth, bool members, std::string& out) {
  if (!json.is_structured() || json.empty()) {
    out += Dumped(json);
    return;
  }
  const bool lines = json.is_array() || members;
  const size_t inner = depth + (lines ? 1 : 0);
  out += json.is_array() ? '[' : '{';
  const char* between = "";
  for (const auto& item : json.items()) {
    out += between;
    if (lines) out += '\n' + std::string(inner, ' ');
    if (json.is_object()) out += Dumped(item.key()) + ": ";
    Print(item.value(), inner, members && item.value().is_object(), out);
    between = lines ? "," : ", ";
  }
  if (lines) out += '\n' + std::string(depth, ' ');
  out += json.is_array() ? ']' : '}';
}

struct ListLine {
  const char* kind;
  size_t bytes;
  const std::string& name;
};

void Append(std::string& list, const ListLine& line) {
  fmt::format_to(std::back_inserter(list), "{:<10} {:>10}  {}\n", line.kind, line.bytes, line.name);
}

size_t BytesOf(const KeyCopy& key) {
  size_t bytes = 0;
  for (const ValueCopy& value : key.values)
    bytes += value.name.size() + value.bytes.size() + (value.text ? value.text->size() : 0) +
             (value.number ? sizeof *value.number : 0);
  return bytes;
}

size_t BytesOf(const ProgramCopy& program) {
  size_t bytes = 0;
  for (const IconPictures& pictures : program.icons) {
    for (const IconPicture& picture : pictures) bytes += picture.png.size();
  }
  for (const VersionCopy& version : program.versions) {
    for (const auto& [name, text] : version.values) bytes += name.size() + text.size();
  }
  return bytes;
}

}  // namespace

std::string CaptureJson(const MachineCopy& machine) {
  const Json json = {{"capture", HeadOf(machine)},
                     {"keys", ListOf(machine.keys)},
                     {"subfolders", ListOf(machine.folders)},
                     {"data", ListOf(machine.data)},
                     {"programs", ListOf(machine.programs)},
                     {"missing", machine.missing}};
  std::string text;
  Print(json, 0, true, text);
  return text + '\n';
}

std::string CaptureList(const MachineCopy& machine) {
  std::string list;
  for (const KeyCopy& key : machine.keys) Append(list, {"key", BytesOf(key), key.key});
  for (const FolderCopy& folder : machine.folders) Append(list, {"folder", 0, folder.path});
  for (const DataCopy& data : machine.data) Append(list, {"file", data.bytes.size(), data.path});
  for (const ProgramCopy& program : machine.programs)
    Append(list, {program.iconFile ? "icon" : "executable", BytesOf(program), program.path});
  for (const std::string& text : machine.missing) Append(list, {"missing", 0, text});
  return list;
}

}  // namespace tarnwick::host
