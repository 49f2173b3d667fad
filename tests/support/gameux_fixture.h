#pragma once
// The list that Windows keeps of the games it knows, for the tests of the strategies that read it.

#include "support/strategy_fixture.h"

#include <string>

namespace tarnwick::tests {

inline const std::string kGameUxList =
    R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\GameUX\Games\)";

class GameUxTest : public StrategyTest {
 protected:
  void Set(const std::string& subkey, const std::string& name, const std::string& text,
           desktop::View view = desktop::View::k32) {
    desktop_.String(kGameUxList + subkey, name, text, view);
  }
  // An entry whose AppExePath, a file in `folder`, exists.
  std::string Enter(const std::string& folder, const std::string& subkey) {
    const std::string exe = folder + subkey + ".exe";
    desktop_.File(exe);
    Set(subkey, "AppExePath", exe);
    return exe;
  }
};

}  // namespace tarnwick::tests
