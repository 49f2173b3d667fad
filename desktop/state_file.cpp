// The journal of a desktop as JSON.
#include "desktop/description.h"
#include "desktop/journal.h"
#include "desktop/json_node.h"

#include <array>
#include <limits>

namespace tarnwick::desktop {
namespace {

// In the order of the enumerations.
constexpr std::array<const char*, 7> kKinds = {"folder", "link", "file", "time", "key", "value", "hold"};
constexpr std::array<const char*, 3> kViews = {"native", "32", "64"};

constexpr const char* kFormat = "tarnwick-desktop-state 1";

std::string Hex(const std::string& bytes) {
  constexpr char digits[] = "0123456789abcdef";
  std::string hex;
  for (const char byte : bytes) {
    hex.push_back(digits[(static_cast<unsigned char>(byte) >> 4) & 0xF]);
    hex.push_back(digits[static_cast<unsigned char>(byte) & 0xF]);
  }
  return hex;
}

Json ThingJson(const MadeThing& thing) {
  Json json = {{"kind", kKinds.at(static_cast<size_t>(thing.kind))}, {"place", thing.place}};
  if (thing.kind == MadeThing::Kind::kValue) json["name"] = thing.name;
  if (thing.view != View::kNative) json["view"] = kViews.at(static_cast<size_t>(thing.view));
  if (thing.before)
    json["before"] = {
        {"hex", Hex(thing.before->bytes)}, {"type", thing.before->type}, {"time", thing.before->time}};
  return json;
}

template <size_t Count>
size_t Place(const Node& node, const std::array<const char*, Count>& names) {
  const std::string text = Text(node);
  for (size_t place = 0; place < Count; ++place)
    if (text == names[place]) return place;
  Fail(node, "unknown word '" + text + "'");
}

MadeThing ReadThing(const Node& node) {
  OnlyMembers(node, {"kind", "place", "name", "view", "before"});
  MadeThing thing;
  thing.kind = static_cast<MadeThing::Kind>(Place(Member(node, "kind"), kKinds));
  thing.place = TextMember(node, "place");
  thing.name = TextMember(node, "name", "");
  if (const auto view = Optional(node, "view")) thing.view = static_cast<View>(Place(*view, kViews));
  if (const auto before = Optional(node, "before")) {
    OnlyMembers(*before, {"hex", "type", "time"});
    thing.before = OldContent{
        HexBytes(Member(*before, "hex")),
        static_cast<uint32_t>(Number(Member(*before, "type"), std::numeric_limits<uint32_t>::max())),
        Number(Member(*before, "time"), std::numeric_limits<uint64_t>::max())};
  }
  return thing;
}

}  // namespace

std::string StateText(const Desktop& desktop) {
  Json made = Json::array();
  for (const MadeThing& thing : desktop.Made()) made.push_back(ThingJson(thing));
  const Json state = {{"format", kFormat}, {"made", made}};
  return state.dump(1);
}

Desktop DesktopFromState(const std::string& json) {
  const Json parsed = ParseJson(json);
  const Node root{&parsed, ""};
  OnlyMembers(root, {"format", "made"});
  if (TextMember(root, "format") != kFormat) Fail(root, "is not the state of a desktop");
  Journal journal;
  for (const Node& item : Items(Member(root, "made"))) journal.push_back(ReadThing(item));
  return Desktop(std::move(journal));
}

}  // namespace tarnwick::desktop
