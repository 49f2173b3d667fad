// "catalogue merge", "catalogue diff" and "catalogue show".
#include "common/catalogue_text.h"
#include "host/catalogue/merge.h"
#include "host/catalogue/record_file.h"
#include "host/catalogue_file.h"
#include "host/commands.h"
#include "host/console.h"
#include "host/explain/name_folding.h"
#include "host/failure.h"
#include "host/list_formats.h"
#include "host/presentation.h"
#include "host/scan_listener.h"
#include "host/text_width.h"

#include <fmt/format.h>

#include <stdexcept>

namespace tarnwick::host {
namespace {

Rows RowOf(const GameSignature& game) {
  Rows row = Rows::object();
  for (const CatalogueElement& element : common::CatalogueElements()) {
    const std::string text = common::ElementText(game, element);
    if (!text.empty()) row[std::string(element.name)] = text;
  }
  return row;
}

Rows RowsOf(const GameList& games) {
  Rows rows = Rows::array();
  for (const GameSignature& game : games) rows.push_back(RowOf(game));
  return rows;
}

Rows RowOf(const RecordChange& change) {
  Rows fields = Rows::array();
  for (const FieldChange& field : change.fields)
    fields.push_back({{"element", field.element}, {"old", field.before}, {"new", field.after}});
  return {{"record", RowOf(change.before)}, {"fields", fields}};
}

bool IsEmpty(const CatalogueDifference& difference) {
  return difference.added.empty() && difference.removed.empty() && difference.changed.empty();
}

std::string JsonText(const CatalogueDifference& difference) {
  Rows changed = Rows::array();
  for (const RecordChange& change : difference.changed) changed.push_back(RowOf(change));
  const Rows all = {
      {"added", RowsOf(difference.added)}, {"removed", RowsOf(difference.removed)}, {"changed", changed}};
  return FormatRows(all, {}, Format::kJson);
}

std::string FieldLine(const FieldChange& field) {
  return PrintableText(fmt::format("    {}: \"{}\" -> \"{}\"", field.element, field.before, field.after)) +
         "\n";
}

std::string TitleLine(const char* mark, const GameSignature& game) {
  return mark + PrintableText(RecordTitle(game)) + "\n";
}

std::string PlainText(const CatalogueDifference& difference) {
  std::string text;
  for (const GameSignature& game : difference.removed) text += TitleLine("- ", game);
  for (const GameSignature& game : difference.added) text += TitleLine("+ ", game);
  for (const RecordChange& change : difference.changed) {
    text += TitleLine("~ ", change.before);
    for (const FieldChange& field : change.fields) text += FieldLine(field);
  }
  return text;
}

void ReportConflict(const RecordChange& conflict) {
  ReportLine("kept the first of two: " + RecordTitle(conflict.before));
  for (const FieldChange& field : conflict.fields)
    WriteStandardError(PrintableText(fmt::format("    {}: kept \"{}\", left \"{}\"", field.element,
                                                 field.before, field.after)) +
                       "\n");
}

std::string PlainText(const GameList& games) {
  std::string text;
  for (const GameSignature& game : games) {
    text += text.empty() ? "" : "\n";
    for (const CatalogueElement& element : common::CatalogueElements()) {
      const std::string value = common::ElementText(game, element);
      if (!value.empty()) text += PrintableText(fmt::format("{:<20}{}", element.name, value)) + "\n";
    }
  }
  return text;
}

GameList RecordsNamed(const GameList& games, const std::string& part) {
  const std::string wanted = FoldedName(part);
  GameList found;
  for (const GameSignature& game : games)
    if (FoldedName(game.DisplayName).find(wanted) != std::string::npos) found.push_back(game);
  return found;
}

}  // namespace

int RunCatalogueMerge(const Options& options) {
  for (const std::string& input : {options.input, options.secondInput}) RefuseSameFile(input, options.output);
  const MergedCatalogue merged =
      MergeCatalogues(ReadCatalogueRecords(options.input), ReadCatalogueRecords(options.secondInput));
  WriteCatalogueRecords(options.output, merged.games);
  for (const RecordChange& conflict : merged.conflicts) ReportConflict(conflict);
  ReportLine(fmt::format("{} written; left out: {} that said the same, {}",
                         Counted(merged.games.size(), "record", "records"), merged.equal,
                         Counted(merged.conflicts.size(), "conflict", "conflicts")));
  return kExitSuccess;
}

int RunCatalogueDiff(const Options& options) {
  try {
    const CatalogueDifference difference =
        CompareCatalogues(ReadCatalogueRecords(options.input), ReadCatalogueRecords(options.secondInput));
    WriteResult("", options.format == Format::kJson ? JsonText(difference) : PlainText(difference));
    return IsEmpty(difference) ? kExitSuccess : kExitFailure;
  } catch (const std::runtime_error& error) {
    // 1 would say that both were read and compared.
    ReportLine(error.what());
    return kExitUsage;
  }
}

int RunCatalogueShow(const Options& options) {
  const std::string path = CatalogueToScan(WithStarterCatalogue(options).catalogue);
  const GameList found = RecordsNamed(ReadCatalogueRecords(path), options.input);
  WriteResult(
      "", options.format == Format::kJson ? FormatRows(RowsOf(found), {}, Format::kJson) : PlainText(found));
  if (!found.empty()) return kExitSuccess;
  ReportLine(fmt::format("no name in {} holds '{}'", path, options.input));
  return kExitFailure;
}

}  // namespace tarnwick::host
