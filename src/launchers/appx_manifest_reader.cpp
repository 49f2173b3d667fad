// Reader: AppxManifest.xml by literal markers.
#include "launchers/appx_manifest_reader.h"

#include <optional>

namespace tarnwick {
namespace {

constexpr size_t kNone = std::string_view::npos;

// What stands between the first `begin` and the next `end` behind it; nothing if either is missing.
std::optional<std::string_view> Between(std::string_view text, std::string_view begin, std::string_view end) {
  const size_t start = text.find(begin);
  if (start == kNone) return std::nullopt;
  const std::string_view rest = text.substr(start + begin.size());
  const size_t length = rest.find(end);
  if (length == kNone) return std::nullopt;
  return rest.substr(0, length);
}

// What stands behind the first `begin`, up to the next `end` or, where that is missing, the text's end.
std::string_view Behind(std::string_view text, std::string_view begin, std::string_view end) {
  const size_t start = text.find(begin);
  if (start == kNone) return {};
  const std::string_view rest = text.substr(start + begin.size());
  return rest.substr(0, rest.find(end));
}

std::string ElementText(std::string_view text, const std::string& name) {
  return std::string(Between(text, "<" + name + ">", "</" + name + ">").value_or(""));
}

std::string ShownName(std::string_view text, const std::string& element) {
  std::string name = ElementText(text, element);
  return IsResourceReference(name) ? std::string() : name;
}

std::string Attribute(std::string_view tag, const std::string& name) {
  return std::string(Between(tag, name + "=\"", "\"").value_or(""));
}

}  // namespace

bool IsResourceReference(std::string_view name) { return name.starts_with("ms-resource:"); }

AppxManifest ParseAppxManifest(std::string_view text) {
  // Without properties the first pair of the whole text counts.
  const std::string_view properties = Between(text, "<Properties>", "</Properties>").value_or(text);
  // To its end and not to that of its tag, which a ">" inside a value would seem to be.
  const std::string_view application =
      Behind(Behind(text, "<Applications>", "</Applications>"), "<Application", "</Application>");
  AppxManifest manifest;
  manifest.displayName = ShownName(properties, "DisplayName");
  manifest.publisherDisplayName = ShownName(properties, "PublisherDisplayName");
  manifest.executable = Attribute(application, "Executable");
  manifest.version = Attribute(Behind(text, "<Identity", ">"), "Version");
  manifest.isFramework =
      ElementText(properties, "Framework") == "true" || ElementText(properties, "ResourcePackage") == "true";
  return manifest;
}

}  // namespace tarnwick
