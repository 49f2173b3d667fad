#pragma once
// What each strategy wants of a catalogue record before it asks anything about it: data, beside the strategy
// table. Nothing in a scan reads it; programs that explain a scan do. Its test holds it against what the
// strategies ask.

#include "catalogue/game_signature.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick {

enum class CatalogueUse {
  kEachRecord,  // asks the machine about each record that it takes
  kLookup,      // reads a launcher's list, and finds nothing without a record that fits
  kHelp,        // reads a launcher's list, and takes names or executables from a record that fits
  kNone,        // reads the machine alone
};

// One of these texts must be there; most wants name a single one. A mark is part of the text that the field
// must have too, without regard to case.
struct WantedText {
  std::vector<std::string GameSignature::*> anyOf;
  const char* mark = "";
  bool later = false;  // missed only when the strategy has asked for the game's place already
};

inline constexpr int32_t kAnySource = -1;

struct StrategyWants {
  const char* strategy;
  CatalogueUse use;
  std::vector<WantedText> texts = {};
  int32_t source = kAnySource;                              // takes records of this source alone
  std::vector<int32_t> passedOver = {};                     // takes no record of these
  std::string GameSignature::* passedOverWith = nullptr;    // of those, only such as have this text
  std::string GameSignature::* leftToOthersWith = nullptr;  // takes no record that has this text
};

// One row for each row of the strategy table, in its order.
const std::vector<StrategyWants>& AllStrategyWants();

// The row of that name; every strategy of the table has one. Throws std::out_of_range for other names.
const StrategyWants& WantsOf(const std::string& strategy);

// The catalogue's name of a field, such as "DefaultExe", and of a source, such as "STEAM" ("none" for 0).
const char* NameOfField(std::string GameSignature::* field);
const char* NameOfSource(int32_t sourceKind);

// Why the strategy doesn't take the record, such as "the record has no RegistryKey"; empty if it takes it.
// Always empty for strategies that do without.
std::string WhyNotTaken(const StrategyWants& wants, const GameSignature& record);

}  // namespace tarnwick
