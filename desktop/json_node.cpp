// Strict reading of JSON.
#include "desktop/json_node.h"

#include <algorithm>

namespace tarnwick::desktop {
namespace {

void Require(const Node& node, bool holds, const std::string& wanted) {
  if (!holds) Fail(node, "needs " + wanted + ", not " + node.value->type_name());
}

// What a text of reasonable use never reaches: a hostile one would take all memory.
constexpr int kDeepest = 64;
constexpr size_t kMostEvents = 4'000'000;

constexpr size_t kLongest = 400;  // of each part of a message

std::string FaultPlace(const std::string& text, size_t byte) {
  const std::string before = text.substr(0, byte == 0 ? 0 : byte - 1);
  const size_t line = 1 + static_cast<size_t>(std::count(before.begin(), before.end(), '\n'));
  const size_t lineStart = before.rfind('\n') + 1;  // none: 0
  const std::string place =
      "line " + std::to_string(line) + ", column " + std::to_string(before.size() - lineStart + 1);
  return (byte > text.size() ? "it ends too early, at " : "at ") + place;
}

int HexDigit(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  return -1;
}

}  // namespace

std::string OneLine(std::string text, size_t longest) {
  for (char& byte : text)
    if (static_cast<unsigned char>(byte) < ' ' || byte == '\x7F') byte = '?';
  if (text.size() <= longest) return text;
  size_t end = longest;
  while ((static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return text.substr(0, end) + "...";
}

Json ParseJson(const std::string& text) {
  size_t events = 0;
  const auto bounded = [&events](int depth, Json::parse_event_t, const Json&) {
    if (depth > kDeepest)
      throw JsonError("the text is nested deeper than " + std::to_string(kDeepest) + " levels");
    if (++events > kMostEvents) throw JsonError("the text holds more than some million values");
    return true;
  };
  try {
    return Json::parse(text, bounded);
  } catch (const Json::parse_error& error) {
    throw JsonError("not JSON: " + FaultPlace(text, error.byte));
  }
}

void Fail(const Node& node, const std::string& why) {
  throw JsonError("at " + OneLine(node.place.empty() ? "/" : node.place, kLongest) + ": " +
                  OneLine(why, kLongest));
}

std::string Text(const Node& node) {
  Require(node, node.value->is_string(), "a text");
  return node.value->get<std::string>();
}

int64_t Integer(const Node& node) {
  Require(node, node.value->is_number_integer(), "a whole number");
  return node.value->get<int64_t>();
}

uint64_t Number(const Node& node, uint64_t largest) {
  Require(node, node.value->is_number_unsigned(), "a whole number from 0 on");
  const uint64_t number = node.value->get<uint64_t>();
  if (number > largest) Fail(node, "is larger than " + std::to_string(largest));
  return number;
}

bool Flag(const Node& node) {
  Require(node, node.value->is_boolean(), "true or false");
  return node.value->get<bool>();
}

std::vector<Node> Items(const Node& node) {
  Require(node, node.value->is_array(), "a list");
  std::vector<Node> items;
  for (const Json& item : *node.value)
    items.push_back({&item, node.place + "/" + std::to_string(items.size())});
  return items;
}

std::vector<std::string> Texts(const Node& node) {
  std::vector<std::string> texts;
  for (const Node& item : Items(node)) texts.push_back(Text(item));
  return texts;
}

std::string HexBytes(const Node& node) {
  std::string digits = Text(node);
  std::erase(digits, ' ');
  if (digits.size() % 2 != 0) Fail(node, "needs two hexadecimal digits for each byte");
  std::string bytes;
  for (size_t place = 0; place < digits.size(); place += 2) {
    const int high = HexDigit(digits[place]);
    const int low = HexDigit(digits[place + 1]);
    if (high < 0 || low < 0) Fail(node, "holds something other than hexadecimal digits");
    bytes.push_back(static_cast<char>(high * 16 + low));
  }
  return bytes;
}

void OnlyMembers(const Node& node, std::initializer_list<const char*> names) {
  Require(node, node.value->is_object(), "an object");
  std::string known;
  for (const char* name : names) known += (known.empty() ? "" : ", ") + std::string(name);
  for (const auto& [name, value] : node.value->items())
    if (std::find(names.begin(), names.end(), name) == names.end())
      Fail(node, "unknown member '" + name + "'; known are " + known);
}

std::optional<Node> Optional(const Node& node, const std::string& name) {
  Require(node, node.value->is_object(), "an object");
  const auto found = node.value->find(name);
  if (found == node.value->end()) return std::nullopt;
  return Node{&*found, node.place + "/" + name};
}

Node Member(const Node& node, const std::string& name) {
  std::optional<Node> member = Optional(node, name);
  if (!member) Fail(node, "missing member '" + name + "'");
  return *member;
}

std::vector<std::pair<std::string, Node>> Members(const Node& node) {
  Require(node, node.value->is_object(), "an object");
  std::vector<std::pair<std::string, Node>> members;
  for (const auto& [name, value] : node.value->items())
    members.push_back({name, {&value, node.place + "/" + name}});
  return members;
}

std::string TextMember(const Node& node, const std::string& name) { return Text(Member(node, name)); }

std::string TextMember(const Node& node, const std::string& name, const std::string& whenMissing) {
  const std::optional<Node> member = Optional(node, name);
  return member ? Text(*member) : whenMissing;
}

bool FlagMember(const Node& node, const std::string& name, bool whenMissing) {
  const std::optional<Node> member = Optional(node, name);
  return member ? Flag(*member) : whenMissing;
}

std::vector<Node> ItemsMember(const Node& node, const std::string& name) {
  const std::optional<Node> member = Optional(node, name);
  return member ? Items(*member) : std::vector<Node>();
}

}  // namespace tarnwick::desktop
