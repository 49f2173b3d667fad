// Which record a strategy asked for, told by running it again.
#include "host/explain/record_search.h"

#include "foundation/machine/paths.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using host::AskingRecord;
using host::RecordsThatAsk;
using host::StrategyRun;
using testing::ElementsAre;
using testing::IsEmpty;

ScanResults AskForEachFolder(const GameList& games, const std::string&) {
  for (const GameSignature& game : games) FileExists(game.DefaultFolder);
  return {};
}

ScanResults AskForItsOwn(const GameList& games, const std::string&) {
  if (!games.empty()) FileExists("C:\\wanted");
  return {};
}

StrategyRun RunOf(ScanFunction* function, int games) {
  StrategyRun run{{"A search", 3, function}, {}, {}, {}, {}};
  for (int i = 0; i < games; ++i) {
    GameSignature game;
    game.DisplayName = "Game " + std::to_string(i);
    game.DefaultFolder = i % 5 == 2 ? "C:\\wanted" : "C:\\other" + std::to_string(i);
    run.games.push_back(game);
  }
  return run;
}

std::vector<std::string> NamesThatAsk(const StrategyRun& run, size_t most) {
  const auto asks = [](const common::Heard& heard) { return heard.question.subject == "C:\\wanted"; };
  std::vector<std::string> names;
  for (const AskingRecord& record : RecordsThatAsk(run, asks, most)) {
    EXPECT_EQ(record.heard.question.subject, "C:\\wanted");
    names.push_back(record.name);
  }
  return names;
}

TEST(HostRecordSearch, FindsEachRecordInOrder) {
  EXPECT_THAT(NamesThatAsk(RunOf(AskForEachFolder, 18), 10),
              ElementsAre("Game 2", "Game 7", "Game 12", "Game 17"));
  EXPECT_THAT(NamesThatAsk(RunOf(AskForEachFolder, 3), 10), ElementsAre("Game 2"));
}

TEST(HostRecordSearch, StopsWhereThereAreEnough) {
  EXPECT_THAT(NamesThatAsk(RunOf(AskForEachFolder, 18), 2), ElementsAre("Game 2", "Game 7"));
}

TEST(HostRecordSearch, WithoutSuchARecordFindsNone) {
  EXPECT_THAT(NamesThatAsk(RunOf(AskForEachFolder, 2), 10), IsEmpty());
  EXPECT_THAT(NamesThatAsk(RunOf(AskForEachFolder, 0), 10), IsEmpty());
}

TEST(HostRecordSearch, AQuestionOfTheStrategysOwnIsNobodys) {
  EXPECT_THAT(NamesThatAsk(RunOf(AskForItsOwn, 8), 10), IsEmpty());
}

}  // namespace
}  // namespace tarnwick
