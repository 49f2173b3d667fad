// Reader: records and the table of what strategies want.
#include "host/catalogue/check_wants.h"

#include "core/strategy_wants.h"
#include "foundation/text.h"
#include "matching/signatures.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace tarnwick::host {
namespace {

using Field = std::string GameSignature::*;

bool IsThere(const GameSignature& record, Field field, const std::string& mark) {
  if (field == Field{&GameSignature::GameGUID}) return HasGameGuid(record);
  const std::string& text = record.*field;
  return !text.empty() && ToLowerBytes(text).find(mark) != text.npos;
}

bool IsMet(const WantedText& wanted, const GameSignature& record) {
  return std::ranges::any_of(wanted.anyOf, [&](Field field) { return IsThere(record, field, wanted.mark); });
}

bool TakesSource(const StrategyWants& wants, const GameSignature& record) {
  if (wants.source != kAnySource) return wants.source == record.SourceKind;
  const bool passedOver = std::ranges::count(wants.passedOver, record.SourceKind) > 0;
  return !passedOver || (wants.passedOverWith != nullptr && (record.*wants.passedOverWith).empty());
}

// Could the strategy take the record if it had further texts?
bool IsOpenTo(const StrategyWants& wants, const GameSignature& record) {
  return wants.use != CatalogueUse::kNone && TakesSource(wants, record) &&
         (wants.leftToOthersWith == nullptr || (record.*wants.leftToOthersWith).empty());
}

// The texts that the record lacks. Where it only helps, it is looked up by the first text, and may leave the
// rest to the launcher's own list.
std::vector<const WantedText*> Missing(const StrategyWants& wants, const GameSignature& record) {
  std::vector<const WantedText*> missing;
  for (const WantedText& text : wants.texts) {
    if (!IsMet(text, record)) missing.push_back(&text);
    if (wants.use == CatalogueUse::kHelp) break;
  }
  return missing;
}

std::string Described(const WantedText& wanted) {
  std::string text;
  for (const Field field : wanted.anyOf) text.append(text.empty() ? "" : " or ").append(NameOfField(field));
  if (*wanted.mark != '\0') text.append(" with '").append(wanted.mark).append("' in it");
  return text;
}

std::string MissingTexts(const StrategyWants& wants, const GameSignature& record) {
  std::string text;
  for (const WantedText* wanted : Missing(wants, record))
    text.append(text.empty() ? "" : " and ").append(Described(*wanted));
  return text + " (" + wants.strategy + ")";
}

}  // namespace

bool IsEverTested(const GameSignature& record) {
  return std::ranges::any_of(AllStrategyWants(), [&](const StrategyWants& wants) {
    return IsOpenTo(wants, record) && Missing(wants, record).empty();
  });
}

std::string WhatWouldTest(const GameSignature& record) {
  std::vector<const StrategyWants*> nearest;
  size_t fewest = std::numeric_limits<size_t>::max();
  for (const StrategyWants& wants : AllStrategyWants()) {
    const size_t missing = Missing(wants, record).size();
    if (!IsOpenTo(wants, record) || missing > fewest) continue;
    if (missing < fewest) nearest.clear();
    fewest = missing;
    nearest.push_back(&wants);
  }
  std::string text;
  for (const auto* wants : nearest)
    text.append(text.empty() ? "" : "; or ").append(MissingTexts(*wants, record));
  return text;
}

}  // namespace tarnwick::host
