#pragma once
// Characters and references that XML doesn't allow. Parsers differ in whether they look: the check looks
// itself, so that it says the same everywhere.

#include "host/catalogue/check_findings.h"

#include <optional>
#include <string_view>

namespace tarnwick::host {

// The first control character that isn't white space, the first "&" outside of comments and CDATA sections
// that begins no reference to a character or to one of XML's five entities, or a declaration that isn't at
// the very beginning. Nothing if there is none.
std::optional<Finding> FindCharacterFault(std::string_view text);

}  // namespace tarnwick::host
