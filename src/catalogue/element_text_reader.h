#pragma once
// The text of one element of the catalogue: cutting it out, white space, and references. Texts are bytes; no
// function keeps state, so all may be called on any thread.

#include <string>
#include <string_view>

namespace tarnwick {

// An opening tag that holds this has no text.
inline constexpr std::string_view kNilAttribute = "i:nil=\"true\"";

// The raw text between an element's tags; empty if the element is absent, nil, self-closed or not closed. The
// opening tag is found by its beginning alone, so the search for DefaultExe also stops at <DefaultExe32>.
std::string ExtractElementText(std::string_view block, std::string_view name);

// Trims white space at both ends, and writes one blank for each run of it inside.
std::string NormalizeElementText(std::string_view text);

// Replaces the five named references and the numeric ones, once: what a replacement gives is not looked at
// again. Whatever is no such reference stays as it stands.
std::string DecodeEntities(std::string_view text);

// `field` = DecodeEntities(NormalizeElementText(raw)), without the work where neither would change anything.
// At least eight bytes must be readable behind `raw`.
void AssignElementText(std::string& field, std::string_view raw);

}  // namespace tarnwick
