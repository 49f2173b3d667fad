// The catalogue's parser beside a general XML parser, and beside its own plain form, on 20,000 records.
//
// The general parser gets what helps it: a document object that is used again, its fastest way through the
// children (in their order, one comparison for each), and records in the same kind of list. Its load_buffer
// works on a copy of the text, which stays untouched as it does with this parser.
#include "catalogue/catalogue_reader.h"
#include "support/catalogue_reference.h"
#include "support/catalogue_sample.h"

#include <benchmark/benchmark.h>
#include <pugixml.hpp>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>

namespace tarnwick {
namespace {

using tests::CatalogueSample;
using tests::SampleStyle;

constexpr int kRecords = 20'000;

const std::string& Text(const benchmark::State& state) {
  static const CatalogueSample kSamples[] = {
      {kRecords, SampleStyle::kSparse}, {kRecords, SampleStyle::kFull}, {kRecords, SampleStyle::kRough}};
  return kSamples[state.range(0)].text();
}

void Report(benchmark::State& state, const GameList& games) {
  if (games.size() != kRecords) state.SkipWithError("not all records were found");
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(Text(state).size()));
  state.counters["bytes"] = static_cast<double>(Text(state).size());
}

void ParseCatalogue_OnePass(benchmark::State& state) {
  GameList games;
  for (auto _ : state) {
    games = ParseCatalogue(Text(state));
    benchmark::DoNotOptimize(games.data());
  }
  Report(state, games);
}

void ParseCatalogue_PlainForm(benchmark::State& state) {
  GameList games;
  for (auto _ : state) {
    games = tests::ParseCataloguePlainly(Text(state));
    benchmark::DoNotOptimize(games.data());
  }
  Report(state, games);
}

void CopyByName(const pugi::xml_node& node, GameSignature& game) {
  for (const tests::CatalogueField& row : tests::CatalogueFields())
    game.*row.field = node.child_value(row.name);
  game.SourceKind = ParseSourceKind(node.child_value("SourceEx"));
}

// One walk over the children; each is looked for from the row behind the last one's, which in a written
// catalogue is the first row looked at.
void CopyInOrder(const pugi::xml_node& node, GameSignature& game) {
  static const std::vector<tests::CatalogueField> kRows = [] {
    std::vector<tests::CatalogueField> rows = tests::CatalogueFields();
    rows.push_back({"SourceEx", nullptr});
    std::ranges::sort(
        rows, [](const auto& one, const auto& other) { return std::strcmp(one.name, other.name) < 0; });
    return rows;
  }();
  size_t row = 0;
  for (const pugi::xml_node& child : node) {
    for (size_t tried = 0; tried < kRows.size(); ++tried, row = (row + 1) % kRows.size()) {
      if (std::strcmp(child.name(), kRows[row].name) == 0) break;
    }
    if (kRows[row].field == nullptr) {
      game.SourceKind = ParseSourceKind(child.child_value());
    } else {
      game.*kRows[row].field = child.child_value();
    }
    row = (row + 1) % kRows.size();
  }
}

template <auto Copy>
GameList ParseWithPugixml(pugi::xml_document& document, const std::string& text) {
  if (!document.load_buffer(text.data(), text.size()))
    throw std::runtime_error("the sample is not well-formed");
  GameList games;
  for (const pugi::xml_node& node : document.document_element()) Copy(node, games.emplace_back());
  return games;
}

template <auto Copy>
void Pugixml(benchmark::State& state) {
  GameList games;
  pugi::xml_document document;
  for (auto _ : state) {
    games = ParseWithPugixml<Copy>(document, Text(state));
    benchmark::DoNotOptimize(games.data());
  }
  // Side by side means the same work: what both give is compared once. The general parser leaves blanks as
  // they are, so its side has less to do.
  for (GameSignature& game : games) {
    for (const tests::CatalogueField& row : tests::CatalogueFields()) {
      game.*row.field = NormalizeElementText(game.*row.field);
    }
  }
  if (tests::FirstDifference(games, ParseCatalogue(Text(state))) != -1)
    state.SkipWithError("the results differ");
  Report(state, games);
}

// The parse alone, without a single field copied.
void Pugixml_ParseAlone(benchmark::State& state) {
  pugi::xml_document document;
  for (auto _ : state) {
    document.load_buffer(Text(state).data(), Text(state).size());
    benchmark::DoNotOptimize(document);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(Text(state).size()));
}

// The style is 0, 1 or 2 as the sample's enumeration has it: sparse, full, rough.
#define TARNWICK_BENCH(...)           \
  BENCHMARK(__VA_ARGS__)              \
      ->ArgName("style")              \
      ->DenseRange(0, 2)              \
      ->Unit(benchmark::kMillisecond) \
      ->MinWarmUpTime(0.2)
TARNWICK_BENCH(ParseCatalogue_OnePass);
TARNWICK_BENCH(Pugixml<CopyInOrder>);
TARNWICK_BENCH(Pugixml<CopyByName>);
TARNWICK_BENCH(Pugixml_ParseAlone);
TARNWICK_BENCH(ParseCatalogue_PlainForm);

}  // namespace
}  // namespace tarnwick
