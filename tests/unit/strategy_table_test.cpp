#include "core/strategy_table.h"

#include "desktop/desktop.h"
#include "support/strategy_rows.h"

#include <gtest/gtest.h>

#include <set>

namespace tarnwick {
namespace {

TEST(StrategyTable, HasTheseRowsInTheirOrder) {
  const std::vector<ScanStrategy> table = ScanStrategies();
  ASSERT_EQ(table.size(), std::size(tests::kStrategyRows));
  for (size_t i = 0; i < table.size(); ++i) {
    EXPECT_EQ(table[i].name, tests::kStrategyRows[i].name);
    EXPECT_EQ(table[i].priority, tests::kStrategyRows[i].level) << table[i].name;
  }
}

TEST(StrategyTable, HasAFunctionOfItsOwnInEveryRow) {
  std::set<ScanFunction*> functions;
  for (const ScanStrategy& strategy : ScanStrategies()) {
    EXPECT_NE(strategy.scanFunction, nullptr) << strategy.name;
    EXPECT_TRUE(functions.insert(strategy.scanFunction).second) << strategy.name;
  }
}

TEST(StrategyTable, SetsTheFlagInNoRow) {
  for (const ScanStrategy& strategy : ScanStrategies()) EXPECT_FALSE(strategy.flag) << strategy.name;
}

// The first two rows would look below HKEY_USERS for another user's SID.
TEST(StrategyTable, KeepsASidFromTheFirstTwoRows) {
  constexpr char kKey[] = R"(HKEY_CURRENT_USER\SOFTWARE\TarnwickTest\StrategyTable)";
  constexpr char kFolder[] = R"(C:\TarnwickTest\StrategyTable)";
  desktop::Desktop desktop;
  desktop.Executable(std::string(kFolder) + "\\foo.exe");
  desktop.String(kKey, "InstallLocation", kFolder);
  desktop.String(kKey, "Path", kFolder);
  GameSignature game;
  game.DisplayName = "Foo";
  game.RegistryKey = kKey;
  game.DefaultExe = "foo.exe";
  GameSignature with_value = game;
  with_value.RegistryPathKeyName = "Path";
  for (size_t row = 0; row < 2; ++row) {
    const ScanResults results = ScanStrategies()[row].scanFunction({game, with_value}, "S-1-5-21-1-2-3-1001");
    ASSERT_FALSE(results.empty()) << row;
    EXPECT_EQ(results[0].exePath, std::string(kFolder) + "\\foo.exe");
  }
}

}  // namespace
}  // namespace tarnwick
