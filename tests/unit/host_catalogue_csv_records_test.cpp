#include "host/catalogue/csv_records.h"

#include "catalogue/catalogue_reader.h"
#include "common/catalogue_text.h"
#include "host/catalogue/merge.h"

#include <gmock/gmock.h>

namespace tarnwick::host {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

std::string FaultOf(const std::string& text) {
  try {
    RecordsFromCsv(text);
    return "";
  } catch (const CsvError& error) {
    return std::to_string(error.place.line) + ":" + std::to_string(error.place.column) + ": " + error.what();
  }
}

// A record with a text in every field that makes trouble somewhere.
GameSignature Hostile(const std::string& text, int32_t kind) {
  GameSignature game;
  size_t number = 0;
  for (const CatalogueElement& element : common::CatalogueElements())
    if (element.field != nullptr) game.*element.field = text + std::to_string(number++) + text;
  game.SourceKind = kind;
  return game;
}

GameList HostileRecords() {
  GameList games = {GameSignature()};
  for (const char* text :
       {"",     " ",    "  a", "a\n", "a\r\nb", "\r",          "\t", ",", "\"",
        "\"\"", "a;b",  ";",   "&",   "&amp;",  "&#10;",       "<",  ">", "</GameSignature>",
        "'",    "=1+1", "@",   "]]>", "é游😀",  "\xEF\xBB\xBF"})
    for (const int32_t kind : {kSourceNone, kSourceSteam, kSourceEa}) games.push_back(Hostile(text, kind));
  return games;
}

void ExpectSame(const GameList& got, const GameList& wanted) {
  ASSERT_THAT(got, SizeIs(wanted.size()));
  for (size_t i = 0; i < got.size(); ++i)
    for (const FieldChange& change : ChangedFields(wanted[i], got[i]))
      ADD_FAILURE() << i << " " << change.element << ": " << change.before << " -> " << change.after;
}

TEST(HostCatalogueCsvRecords, ComeBackFromCsvAsTheyWere) {
  ExpectSame(RecordsFromCsv(CsvFromRecords(HostileRecords())), HostileRecords());
}

TEST(HostCatalogueCsvRecords, ComeBackFromACatalogueMadeOfTheirCsv) {
  const GameList games = RecordsFromCsv(CsvFromRecords(HostileRecords()));
  ExpectSame(ParseCatalogue(common::CatalogueText(games)), HostileRecords());
}

TEST(HostCatalogueCsvRecords, WhatCsvRefusesIsToldWithItsPlace) {
  GameSignature game;
  game.DisplayName = "Wren\x02";
  EXPECT_EQ(FaultOf(CsvFromRecords({game})), "2:5: U+0002, which no catalogue can hold");
}

TEST(HostCatalogueCsvRecords, NamesComeFirstAndEveryElementHasAColumn) {
  const std::string header = CsvFromRecords({});
  EXPECT_THAT(header, StartsWith("DisplayName,SourceEx,SourceExId,"));
  for (const CatalogueElement& element : common::CatalogueElements())
    EXPECT_THAT("," + header, HasSubstr("," + std::string(element.name)));
}

TEST(HostCatalogueCsvRecords, ColumnsMayStandInAnyOrderAndBeAbsent) {
  const GameList games = RecordsFromCsv("RunningExe,DisplayName\nw.exe,Wren\n");
  ASSERT_THAT(games, SizeIs(1));
  EXPECT_EQ(games[0].RunningExe, "w.exe");
  EXPECT_EQ(games[0].DisplayName, "Wren");
  EXPECT_EQ(games[0].SourceKind, kSourceNone);
}

TEST(HostCatalogueCsvRecords, AColumnForPeopleMakesNothing) {
  EXPECT_EQ(RecordsFromCsv("DisplayName,checked\nWren,\"seen, twice\"\n")[0].DisplayName, "Wren");
}

TEST(HostCatalogueCsvRecords, ALineMakesARecordForEachOfItsSources) {
  const GameList games = RecordsFromCsv(
      "DisplayName,SourceEx,SourceExId,DefaultExe,DefaultExe@GOG,GameInfo@UWP\n"
      "Wren,STEAM; Gog;UWP,70; 71 ;,a.exe,b.exe,Wren_1\n"
      "Owl,STEAM,72,c.exe,,\n");
  ASSERT_THAT(games, SizeIs(4));
  EXPECT_EQ(games[0].SourceKind, kSourceSteam);
  EXPECT_EQ(games[0].SourceExId, "70");
  EXPECT_EQ(games[0].DefaultExe, "a.exe");
  EXPECT_EQ(games[0].GameInfo, "");
  EXPECT_EQ(games[1].SourceKind, kSourceGog);
  EXPECT_EQ(games[1].SourceExId, "71");
  EXPECT_EQ(games[1].DefaultExe, "b.exe");
  EXPECT_EQ(games[2].SourceKind, kSourceUwp);
  EXPECT_EQ(games[2].SourceExId, "");
  EXPECT_EQ(games[2].DefaultExe, "a.exe");
  EXPECT_EQ(games[2].GameInfo, "Wren_1");
  EXPECT_EQ(games[3].DisplayName, "Owl");
}

TEST(HostCatalogueCsvRecords, AColumnOfASourceHoldsForEveryNameOfIt) {
  EXPECT_EQ(RecordsFromCsv("SourceEx,DefaultExe@ORIGIN\nEA,a.exe\n")[0].DefaultExe, "a.exe");
}

TEST(HostCatalogueCsvRecords, SeveralSourcesMayHaveNoIdsAtAll) {
  EXPECT_THAT(RecordsFromCsv("DisplayName,SourceEx\nWren,STEAM;GOG\n"), SizeIs(2));
  EXPECT_THAT(RecordsFromCsv("DisplayName,SourceEx,SourceExId\nWren,STEAM;GOG,\n"), SizeIs(2));
}

TEST(HostCatalogueCsvRecords, IdsMustBeAsManyAsSources) {
  const std::string header = "DisplayName,SourceEx,SourceExId\n";
  EXPECT_EQ(FaultOf(header + "Wren,STEAM;GOG,70\n"),
            "2:16: SourceEx holds 2 sources, SourceExId 1 of their ids");
  EXPECT_EQ(FaultOf(header + "Wren,STEAM;GOG,70;71;72\n"),
            "2:16: SourceEx holds 2 sources, SourceExId 3 of their ids");
  EXPECT_EQ(FaultOf(header + "Wren,STEAM,70;71\n"), "");  // one source: its id is the whole text
}

TEST(HostCatalogueCsvRecords, NamesThePlaceOfWhatItDoesNotKnow) {
  EXPECT_THAT(FaultOf("DisplayName,Wings\n"), StartsWith("1:13: unknown column 'Wings'"));
  EXPECT_THAT(FaultOf("DisplayName;SourceEx\n"), HasSubstr("parted by commas"));
  EXPECT_THAT(FaultOf("GameSignature\n"), StartsWith("1:1: unknown column"));
  EXPECT_THAT(FaultOf("SourceEx@STEAM\n"), StartsWith("1:1: unknown column"));
  EXPECT_THAT(FaultOf("DefaultExe@STAEM\n"), StartsWith("1:1: no source is called 'STAEM'"));
  EXPECT_THAT(FaultOf("DefaultExe,DefaultExe\n"), StartsWith("1:12: a second column 'DefaultExe'"));
  EXPECT_THAT(FaultOf("DisplayName,SourceEx\nWren,STAEM\n"), StartsWith("2:6: no source is called 'STAEM'"));
  EXPECT_THAT(FaultOf("DisplayName,SourceEx\nWren,STEAM;\n"), StartsWith("2:6: no source is called ''"));
  EXPECT_THAT(FaultOf(""), StartsWith("1:1: there is no header"));
}

TEST(HostCatalogueCsvRecords, EveryLineHasTheHeadersFields) {
  EXPECT_EQ(FaultOf("DisplayName,SourceEx\nWren\n"),
            "2:1: the line ends here after 1 fields; the header has 2");
  EXPECT_EQ(FaultOf("DisplayName\nWren,STEAM\n"), "2:6: the line ends here after 2 fields; the header has 1");
}

TEST(HostCatalogueCsvRecords, ATextForASourceThatALineDoesNotHaveIsNoneToLose) {
  EXPECT_THAT(FaultOf("DisplayName,SourceEx,DefaultExe@GOG\nWren,STEAM,a.exe\n"),
              StartsWith("2:12: DefaultExe@GOG has a text"));
}

TEST(HostCatalogueCsvRecords, ManySourcesOfALongLineAreRefusedBeforeMemoryIs) {
  std::string sources = "ARC";
  while (sources.size() + 4 <= kMostCsvFieldBytes) sources += ";ARC";
  EXPECT_THAT(FaultOf("DisplayName,SourceEx\n" + std::string(kMostCsvFieldBytes, 'a') + "," + sources + "\n"),
              HasSubstr("2:1: the records up to here take more than 256 MB"));
}

TEST(HostCatalogueCsvRecords, AHeaderAloneHasNoRecords) {
  EXPECT_THAT(RecordsFromCsv("DisplayName\n"), IsEmpty());
}

}  // namespace
}  // namespace tarnwick::host
