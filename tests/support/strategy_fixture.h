#pragma once
// What the tests of the strategies begin with: a desktop to put games on, and the log.

#include "catalogue/game_signature.h"
#include "desktop/desktop.h"
#include "support/debug_capture.h"
#include "support/describe.h"
#include "support/failing_allocation.h"
#include "support/odd_name.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

namespace tarnwick::tests {

class StrategyTest : public testing::Test {
 protected:
  desktop::Desktop desktop_;
  DebugCapture capture_;
};

// For the choice of one game's executable: its signature, and files that exist below a folder.
class ResolveTest : public StrategyTest {
 protected:
  explicit ResolveTest(std::string root) : root_(std::move(root)) {}

  std::string Make(const std::string& path) {
    desktop_.File(root_ + path);
    return root_ + path;
  }

  const std::string root_;
  GameSignature signature_;
};

// The signature with the fields that a result takes over or leaves out.
inline GameSignature WithResultFields(GameSignature signature) {
  signature.LaunchUrl = "foo://run";
  signature.SourceKind = kSourceEa;
  signature.SourceExId = "7";
  return signature;
}

// The whole log of the "<name> Search" that found these games, each given as "<game> -> <path>".
inline std::vector<std::string> SearchLog(const std::string& name, const std::vector<std::string>& found) {
  const std::string prefix = "[Tarnwick] [" + name + "Search] ";
  std::vector<std::string> lines = {prefix + "Starting " + name + " Search...\n"};
  for (const std::string& game : found) lines.push_back(prefix + "Found: " + game + "\n");
  lines.push_back(prefix + "Scan completed! Found " + std::to_string(found.size()) + " games.\n");
  return lines;
}

// What a search gives where a text of this many bytes, or more, gets no memory.
template <typename Search>
std::vector<std::string> WithoutMemory(size_t bytes, const Search& search) {
  const FailingAllocation failing(bytes);
  return search();
}

}  // namespace tarnwick::tests
