#pragma once
// A place in a JSON text, and strict reading from it: every failure names the place, as
// /steam/libraries/0/path.

#include <nlohmann/json.hpp>

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarnwick::desktop {

using Json = nlohmann::ordered_json;

struct JsonError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Refers to a value that lives longer than the node.
struct Node {
  const Json* value = nullptr;
  std::string place;  // empty for the whole text
};

// Throws JsonError with line and column.
Json ParseJson(const std::string& text);

// What is repeated in a message: control characters become question marks, and of more bytes than `longest`
// the rest is left out.
std::string OneLine(std::string text, size_t longest);

[[noreturn]] void Fail(const Node& node, const std::string& why);

// All of these throw JsonError where the value has another type.
std::string Text(const Node& node);
int64_t Integer(const Node& node);
uint64_t Number(const Node& node, uint64_t largest);
bool Flag(const Node& node);
std::vector<Node> Items(const Node& node);
std::vector<std::string> Texts(const Node& node);
std::string HexBytes(const Node& node);

// Members of an object. OnlyMembers refuses any other name, so that a misspelt member is heard of.
void OnlyMembers(const Node& node, std::initializer_list<const char*> names);
std::optional<Node> Optional(const Node& node, const std::string& name);
Node Member(const Node& node, const std::string& name);
std::vector<std::pair<std::string, Node>> Members(const Node& node);
std::string TextMember(const Node& node, const std::string& name);
std::string TextMember(const Node& node, const std::string& name, const std::string& whenMissing);
bool FlagMember(const Node& node, const std::string& name, bool whenMissing);
std::vector<Node> ItemsMember(const Node& node, const std::string& name);  // none if the member is missing

}  // namespace tarnwick::desktop
