// Reads a captured machine from JSON and refuses it for the first fault.
#include "common/capture_rules.h"
#include "desktop/capture.h"
#include "desktop/capture_machine.h"
#include "desktop/description_parts.h"
#include "desktop/machine_settings.h"
#include "desktop/png_check.h"
#include "desktop/value_bytes.h"
#include "desktop/version_resource.h"
#include "foundation/windows_api.h"

#include <wincrypt.h>

#include <limits>
#include <set>

namespace tarnwick::desktop {
namespace {

constexpr uint64_t kVersion = 1;
constexpr uint64_t kLargestSize = uint64_t{1} << 40;  // of a file; only zeros are so long
constexpr size_t kLongestValue = 1 << 20;
constexpr int64_t kFirstTime = -11644473600;  // the year 1601, where Windows' times begin
constexpr int64_t kLastTime = 253402300799;   // the end of the year 9999
constexpr size_t kMostPictures = 4096;        // of one program
constexpr size_t kLongestVersions = 0xFFFF;   // a block of a version resource has 16 bits for its length

// What is known of the machine when its sections are read.
struct Reading {
  std::set<char> drives;
  std::map<std::string, std::string> folders;  // place in the text by folded path
  std::map<std::string, std::string> files;
  Capture capture;
};

std::string Shown(const std::string& text) { return "'" + OneLine(text, 200) + "' "; }

void Refuse(const Node& node, const std::string& text, const std::string& fault) {
  if (!fault.empty()) Fail(node, Shown(text) + fault);
}

std::string AllowedPath(const Reading& reading, const Node& node) {
  const std::string told = Text(node);
  const std::string path = common::TidyPath(told);
  Refuse(node, told, common::PathFault(path, reading.drives));
  const std::string found = WithLongNames(path);
  Refuse(node, told, common::PathFault(found, reading.drives));
  Refuse(node, told, PlaceFault(found));
  return found;
}

void RefuseTwice(const Node& node, const std::string& path, const std::map<std::string, std::string>& places,
                 const std::string& folded) {
  const auto found = places.find(folded);
  if (found != places.end()) Fail(node, Shown(path) + "stands at " + found->second + " already");
}

std::string FilePath(Reading& reading, const Node& item) {
  const Node node = Member(item, "path");
  const std::string path = AllowedPath(reading, node);
  if (path.size() <= 3) Fail(node, Shown(path) + "is a drive, not a file");
  const std::string folded = common::Folded(path);
  RefuseTwice(node, path, reading.files, folded);
  RefuseTwice(node, path, reading.folders, folded);
  reading.files[folded] = node.place;
  return path;
}

std::string FolderPath(Reading& reading, const Node& item) {
  const Node node = Member(item, "path");
  const std::string path = AllowedPath(reading, node);
  RefuseTwice(node, path, reading.folders, common::Folded(path));
  reading.folders[common::Folded(path)] = node.place;
  return path;
}

// No file may stand where the way to another thing leads.
void RefuseFilesAsFolders(const Reading& reading, const std::map<std::string, std::string>& places) {
  for (const auto& [path, place] : places)
    for (size_t end = path.find('\\', 3); end != std::string::npos; end = path.find('\\', end + 1)) {
      const auto file = reading.files.find(path.substr(0, end));
      if (file != reading.files.end())
        throw JsonError("at " + place + ": lies below the file at " + file->second);
    }
}

std::optional<int64_t> ReadModified(const Node& item) {
  const std::optional<Node> node = Optional(item, "modified");
  if (!node) return std::nullopt;
  const int64_t seconds = Integer(*node);
  if (seconds < kFirstTime || seconds > kLastTime) Fail(*node, "is no time between the years 1601 and 9999");
  return seconds;
}

std::string Base64Bytes(const Node& node) {
  const std::string text = Text(node);
  constexpr const char* kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/=";
  if (text.empty()) return {};
  DWORD length = static_cast<DWORD>(text.size());
  std::string bytes(text.size(), '\0');
  if (text.size() % 4 != 0 || text.find_first_not_of(kDigits) != std::string::npos ||
      text.find('=') < text.size() - 2 ||
      !CryptStringToBinaryA(text.data(), static_cast<DWORD>(text.size()), CRYPT_STRING_BASE64,
                            reinterpret_cast<BYTE*>(bytes.data()), &length, nullptr, nullptr))
    Fail(node, "is no base64 text");
  bytes.resize(length);
  return bytes;
}

// capture

char ReadDrive(const Node& node) {
  const std::string text = Text(node);
  const char letter = text.empty() ? '\0' : static_cast<char>(text[0] & ~0x20);
  if (text.size() != 3 || text.substr(1) != ":\\" || letter < 'A' || letter > 'Z')
    Fail(node, Shown(text) + "is no drive such as 'C:\\'");
  const std::string fault = DriveFault(letter);
  if (!fault.empty()) Fail(node, fault);
  return letter;
}

void ReadDrives(Reading& reading, const Node& head) {
  for (const Node& item : ItemsMember(head, "drives"))
    if (!reading.drives.insert(ReadDrive(item)).second) Fail(item, "names the drive a second time");
}

void ReadKnownFolders(Reading& reading, const Node& head) {
  const std::optional<Node> folders = Optional(head, "knownFolders");
  if (!folders) return;
  for (const auto& [name, node] : Members(*folders)) {
    if (!IsKnownFolder(name)) Fail(*folders, Shown(name) + "is no known folder's name");
    if (!Text(node).empty()) reading.capture.knownFolders[name] = AllowedPath(reading, node);
  }
}

void ReadEnvironment(Reading& reading, const Node& head) {
  const std::optional<Node> variables = Optional(head, "environment");
  if (!variables) return;
  std::set<std::string> known;
  for (const auto& [name, node] : Members(*variables)) {
    Refuse(*variables, name, common::VariableFault(name));
    if (!known.insert(common::Folded(name)).second) Fail(*variables, Shown(name) + "stands there twice");
    const std::string text = Text(node);
    if (text.size() > 32766 || text.find('\0') != std::string::npos) Fail(node, "is no text of a variable");
    reading.capture.environment[name] = text;
  }
}

void RequireVersion(const Node& head) {
  const Node node = Member(head, "version");
  const uint64_t version = Number(node, std::numeric_limits<uint64_t>::max());
  if (version != kVersion)
    Fail(node, "this capture has version " + std::to_string(version) + "; this program builds version " +
                   std::to_string(kVersion));
}

void ReadHead(Reading& reading, const Node& head) {
  OnlyMembers(head, {"version", "tarnwick", "catalogue", "knownFolders", "environment", "drives"});
  TextMember(head, "tarnwick", "");
  ReadDrives(reading, head);
  ReadKnownFolders(reading, head);
  ReadEnvironment(reading, head);
}

void RequireCatalogue(const Reading& reading, const Node& head) {
  const std::optional<Node> node = Optional(head, "catalogue");
  if (!node || Text(*node).empty()) return;
  const std::string path = AllowedPath(reading, *node);
  if (!reading.files.contains(common::Folded(path)))
    Fail(*node, Shown(path) + "is not among the captured files");
}

// keys

std::string ValueBytes(const Node& node, uint32_t type) {
  const size_t contents = node.value->count("text") + node.value->count("number") + node.value->count("hex");
  if (contents != 1) Fail(node, "needs one kind of content: text, number or hex");
  if (const auto text = Optional(node, "text")) {
    if (type != REG_SZ && type != REG_EXPAND_SZ) Fail(*text, "only types 1 and 2 have a text");
    if (Text(*text).find('\0') != std::string::npos) Fail(*text, "has a zero inside; tell its bytes in hex");
    return TerminatedUnits(Text(*text));
  }
  if (const auto hex = Optional(node, "hex")) return HexBytes(*hex);
  const Node number = Member(node, "number");
  if (type != REG_DWORD) Fail(number, "only type 4 has a number");
  return DwordBytes(static_cast<uint32_t>(Number(number, std::numeric_limits<uint32_t>::max())));
}

CapturedValue ReadValue(const Node& node) {
  OnlyMembers(node, {"name", "type", "text", "number", "hex"});
  CapturedValue value;
  value.name = TextMember(node, "name");
  if (value.name.size() > 16383 || value.name.find('\0') != std::string::npos)
    Fail(Member(node, "name"), "is no name of a value");
  value.type = static_cast<uint32_t>(Number(Member(node, "type"), std::numeric_limits<uint32_t>::max()));
  value.bytes = ValueBytes(node, value.type);
  if (value.bytes.size() > kLongestValue) Fail(node, "has more than a megabyte");
  return value;
}

std::vector<CapturedValue> ReadValues(const Node& item) {
  std::vector<CapturedValue> values;
  std::set<std::string> known;
  for (const Node& node : ItemsMember(item, "values")) {
    values.push_back(ReadValue(node));
    if (!known.insert(common::Folded(values.back().name)).second)
      Fail(node, Shown(values.back().name) + "stands in this key twice");
  }
  return values;
}

void ReadKeys(Reading& reading, const Node& section) {
  std::set<std::pair<std::string, View>> known;
  for (const Node& item : Items(section)) {
    OnlyMembers(item, {"key", "view", "values"});
    const Node node = Member(item, "key");
    const std::string key = common::TidyKey(Text(node));
    const View view = ViewMember(item, View::kNative);
    const std::vector<CapturedValue> values = ReadValues(item);
    Refuse(node, Text(node), common::KeyFault(key, !values.empty()));
    if (!known.insert({common::Folded(key), view}).second)
      Fail(node, Shown(key) + "stands there twice in this view");
    reading.capture.keys.push_back({key, view, values});
  }
}

// subfolders, data, programs

void ReadFolders(Reading& reading, const Node& section) {
  for (const Node& item : Items(section)) {
    OnlyMembers(item, {"path", "refused", "modified"});
    const std::string path = FolderPath(reading, item);
    reading.capture.folders.push_back({path, FlagMember(item, "refused", false), ReadModified(item)});
    if (path.size() <= 3 && reading.capture.folders.back().refused)
      Fail(item, "a whole drive can't be kept from being listed");
  }
}

CapturedFile ReadContent(const Node& item) {
  if (item.value->count("text") + item.value->count("base64") != 1)
    Fail(item, "needs one kind of content: text or base64");
  CapturedFile file;
  const std::optional<Node> text = Optional(item, "text");
  file.bytes = text ? Text(*text) : Base64Bytes(Member(item, "base64"));
  file.size = file.bytes.size();
  return file;
}

void ReadFile(Reading& reading, const Node& item) {
  OnlyMembers(item, {"path", "text", "base64", "cut", "size", "modified"});
  const std::string path = FilePath(reading, item);
  CapturedFile file = ReadContent(item);
  file.path = path;
  file.modified = ReadModified(item);
  const std::optional<Node> size = Optional(item, "size");
  if (FlagMember(item, "cut", false) && !size) Fail(item, "missing member 'size' of a file that is cut");
  if (size) {
    const uint64_t told = Number(*size, kLargestSize);
    if (told < file.size) Fail(*size, "is less than the content has");
    file.size = told;
  }
  reading.capture.files.push_back(file);
}

void ReadFiles(Reading& reading, const Node& section) {
  for (const Node& item : Items(section)) ReadFile(reading, item);
}

IconImage ReadImage(const Node& node) {
  OnlyMembers(node, {"size", "png"});
  const Node size = Member(node, "size");
  IconImage image;
  image.size = static_cast<int>(Number(size, 256));
  if (image.size == 0) Fail(size, "an image has 1 to 256 pixels");
  const Node png = Member(node, "png");
  image.png = Base64Bytes(png);
  const std::string fault = PngFault(image.png, image.size);
  if (!fault.empty()) Fail(png, fault);
  return image;
}

IconGroup ReadIcon(const Node& node) {
  OnlyMembers(node, {"images"});
  IconGroup icon;
  for (const Node& image : Items(Member(node, "images"))) icon.images.push_back(ReadImage(image));
  if (icon.images.empty()) Fail(node, "an icon has an image at least");
  return icon;
}

VersionStrings ReadVersionTexts(const Node& node) {
  OnlyMembers(node, {"language", "codePage", "values"});
  VersionStrings version;
  version.language = static_cast<uint16_t>(Number(Member(node, "language"), 0xFFFF));
  version.codePage = static_cast<uint16_t>(Number(Member(node, "codePage"), 0xFFFF));
  for (const auto& [name, text] : Members(Member(node, "values"))) version.values[name] = Text(text);
  return version;
}

// Each block has its own length too, but none is longer than the whole.
void RequireShortVersions(const Node& item, const std::vector<VersionStrings>& versions) {
  size_t length = 0;
  for (const VersionStrings& version : versions)
    for (const auto& [name, text] : version.values) length += 2 * (name.size() + text.size()) + 64;
  if (length > kLongestVersions || versions.size() > 256)
    Fail(Member(item, "versions"), "has more texts than a version resource can hold");
}

// The resources of a program are counted in 16 bits.
void RequireFewPictures(const Node& item, const std::vector<IconGroup>& icons) {
  size_t count = 0;
  for (const IconGroup& icon : icons) count += icon.images.size();
  if (count > kMostPictures) Fail(Member(item, "icons"), "has more than 4096 pictures");
}

ExecutableOptions ReadOptions(const Node& item) {
  ExecutableOptions options;
  for (const Node& node : ItemsMember(item, "versions")) options.versions.push_back(ReadVersionTexts(node));
  if (!options.versions.empty()) RequireShortVersions(item, options.versions);
  for (const Node& node : ItemsMember(item, "icons")) options.icons.push_back(ReadIcon(node));
  if (!options.icons.empty()) RequireFewPictures(item, options.icons);
  if (const auto size = Optional(item, "size")) options.size = Number(*size, kLargestSize);
  return options;
}

bool ReadIsIconFile(const Node& item, const ExecutableOptions& options) {
  const std::string kind = TextMember(item, "kind", "program");
  if (kind != "program" && kind != "icon") Fail(Member(item, "kind"), "needs \"program\" or \"icon\"");
  if (kind == "icon" && options.icons.size() != 1) Fail(item, "an icon file has one icon");
  return kind == "icon";
}

void ReadPrograms(Reading& reading, const Node& section) {
  for (const Node& item : Items(section)) {
    OnlyMembers(item, {"path", "kind", "size", "versions", "icons", "modified"});
    const std::string path = FilePath(reading, item);
    const ExecutableOptions options = ReadOptions(item);
    reading.capture.programs.push_back({path, ReadIsIconFile(item, options), options, ReadModified(item)});
  }
}

void ReadMissing(Reading&, const Node& section) { Texts(section); }
void ReadComment(Reading&, const Node&) {}

struct Section {
  const char* name;
  void (*read)(Reading&, const Node&);
};
constexpr Section kSections[] = {
    {"capture", ReadHead},      {"keys", ReadKeys},       {"subfolders", ReadFolders}, {"data", ReadFiles},
    {"programs", ReadPrograms}, {"missing", ReadMissing}, {"comment", ReadComment}};

void RefuseUnknownSections(const Node& root) {
  for (const auto& [name, node] : Members(root)) {
    bool known = false;
    for (const Section& section : kSections) known = known || name == section.name;
    if (!known) Fail(root, "a captured machine has no section '" + name + "'");
  }
}

}  // namespace

bool IsCapture(const Node& root) { return Optional(root, "capture").has_value(); }

Capture ReadCapture(const Node& root) {
  // A later version may have other members, of which nothing is to be said here.
  RequireVersion(Member(root, "capture"));
  RefuseUnknownSections(root);
  Reading reading;
  for (const Section& section : kSections)
    if (const std::optional<Node> node = Optional(root, section.name)) section.read(reading, *node);
  RequireCatalogue(reading, Member(root, "capture"));
  RefuseFilesAsFolders(reading, reading.files);
  RefuseFilesAsFolders(reading, reading.folders);
  return std::move(reading.capture);
}

}  // namespace tarnwick::desktop
