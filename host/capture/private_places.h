#pragma once
// The table of what is recognised as private by the place where it stands.

#include "host/capture/private_things.h"

#include <cstddef>
#include <vector>

namespace tarnwick::host {

struct PrivateSpan {
  size_t begin = 0;  // characters of the coded text
  size_t end = 0;
  PrivateKind kind = PrivateKind::kUser;
  bool everywhere = true;
};

// In the order of the text; they may overlap.
std::vector<PrivateSpan> PrivateSpans(const CodedText& coded);

// A word that is no name of somebody, such as "public" below C:\Users or "offline" for an account.
bool IsNobody(std::u32string_view folded);

// A name that is too short or too common to be replaced wherever it stands.
bool IsOrdinary(std::u32string_view folded);

// In lower case, such as "accountname".
bool IsAccountField(std::u32string_view folded);

}  // namespace tarnwick::host
