// The starter catalogue that lies beside the program: when the program takes it, and that the library never does.
#include "desktop/desktop.h"
#include "support/current_directory.h"
#include "support/file_bytes.h"
#include "support/library.h"
#include "support/process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <set>

namespace tarnwick::tests {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using Names = std::set<std::string>;

const std::string kFolder = R"(C:\TarnwickTest\Starter)";
const std::string kProgram = kFolder + R"(\bin\tarnwick.exe)";
const std::string kStarter = kFolder + R"(\bin\MasterGameList.xml)";
const std::string kHere = kFolder + R"(\here)";
const std::string kSaid =
    "tarnwick: no catalogue was named, and none is in the current folder; using the starter catalogue " +
    kStarter + "\n";
const std::string kMissing =
    "tarnwick: there is no MasterGameList_decrypted.xml and no MasterGameList.xml in the current folder; "
    "name a "
    "catalogue\n";

std::string CatalogueOf(const std::string& name) {
  return "<A><GameSignature><DisplayName>" + name + "</DisplayName><DefaultFolder>" + kFolder +
         "\\game</DefaultFolder><DefaultExe>wren.exe</DefaultExe></GameSignature></A>";
}

// The built program in a folder of its own, and a folder to run it in without any catalogue; a game that each record
// of these tests finds, so that the name in the answer tells which catalogue was taken.
class StarterCatalogue : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* file : {"tarnwick.exe", "Tarnwick.dll"})
      world_.File(kFolder + "\\bin\\" + file, ReadBytes(TestProgramFolder() + file));
    world_.Executable(kFolder + R"(\game\wren.exe)");
    world_.Folder(kHere);
  }

  void PutBeside(const std::string& name) { world_.File(kStarter, CatalogueOf(name)); }
  void PutHere(const std::string& file, const std::string& name) {
    world_.File(kHere + "\\" + file, CatalogueOf(name));
  }

  ProgramResult Run(const std::vector<std::string>& arguments) {
    return RunProgram(kProgram, arguments, kHere);
  }

  Names NamesScanned(std::vector<std::string> more = {}) {
    more.insert(more.begin(), {"scan", "--format", "json"});
    const ProgramResult scan = Run(more);
    EXPECT_EQ(scan.exitCode, 0u) << scan.errors;
    errors_ = scan.errors;
    Names names;
    for (const auto& game : nlohmann::json::parse(scan.output)) names.insert(game.at("name"));
    return names;
  }

  desktop::Desktop world_;
  std::string errors_;
};

TEST_F(StarterCatalogue, IsScannedWhereNoneIsNamedAndNoneIsInTheFolderAndThatIsSaid) {
  PutBeside("Starter");
  EXPECT_EQ(NamesScanned(), Names{"Starter"});
  EXPECT_EQ(errors_, kSaid);
  const ProgramResult table = Run({"scan"});
  EXPECT_EQ(table.errors, kSaid);
  EXPECT_THAT(table.output, Not(HasSubstr("starter")));
}

TEST_F(StarterCatalogue, ServesEveryCommandThatNeedsNoCatalogueNamed) {
  PutBeside("Starter");
  const ProgramResult explained = Run({"explain", "Starter"});
  EXPECT_EQ(explained.exitCode, 0u);
  EXPECT_EQ(explained.errors, kSaid);
  EXPECT_THAT(explained.output, HasSubstr("Found by Default Exe Search"));
  const ProgramResult shown = Run({"catalogue", "show", "Starter"});
  EXPECT_EQ(shown.exitCode, 0u);
  EXPECT_EQ(shown.errors, kSaid);
  const ProgramResult captured = Run({"capture", "--list"});
  EXPECT_EQ(captured.exitCode, 0u);
  EXPECT_THAT(captured.errors, HasSubstr(kSaid));
  EXPECT_THAT(captured.output, HasSubstr(kStarter));
  world_.File(kHere + R"(\games.html)", "");
  EXPECT_EQ(Run({"scan", "--format", "html", "-o", "games.html"}).errors, kSaid);
}

TEST_F(StarterCatalogue, StaysOutOfWhatAsksForNoCatalogue) {
  PutBeside("Starter");
  EXPECT_THAT(Run({"explain", "--app", "no such application"}).errors, Not(HasSubstr("catalogue")));
  EXPECT_THAT(Run({"apps", "--all"}).errors, Not(HasSubstr("catalogue")));
  EXPECT_THAT(Run({"catalogue", "import", "installed"}).errors, Not(HasSubstr("starter")));
}

TEST_F(StarterCatalogue, YieldsToEitherCatalogueOfTheFolder) {
  PutBeside("Starter");
  PutHere("MasterGameList.xml", "Folder");
  EXPECT_EQ(NamesScanned(), Names{"Folder"});
  EXPECT_THAT(errors_, IsEmpty());
  PutHere("MasterGameList_decrypted.xml", "Deciphered");
  EXPECT_EQ(NamesScanned(), Names{"Deciphered"});
  EXPECT_THAT(errors_, IsEmpty());
}

// The folder's own is to be mended or taken away, not passed over in silence.
TEST_F(StarterCatalogue, YieldsToABrokenCatalogueOfTheFolderToo) {
  PutBeside("Starter");
  world_.File(kHere + R"(\MasterGameList.xml)", "");
  const ProgramResult scan = Run({"scan"});
  EXPECT_EQ(scan.exitCode, 1u);
  EXPECT_EQ(scan.errors, "tarnwick: MasterGameList.xml is empty; get the catalogue anew\n");
}

TEST_F(StarterCatalogue, YieldsToANamedCatalogueThereOrNot) {
  PutBeside("Starter");
  PutHere("mine.xml", "Mine");
  EXPECT_EQ(NamesScanned({"mine.xml"}), Names{"Mine"});
  EXPECT_THAT(errors_, IsEmpty());
  const ProgramResult missing = Run({"scan", "none.xml"});
  EXPECT_EQ(missing.exitCode, 1u);
  EXPECT_EQ(missing.errors, "tarnwick: none.xml does not exist; check the path\n");
}

TEST_F(StarterCatalogue, IsNotMissedByAnotherMessageThanBefore) {
  for (const std::vector<std::string>& command : {std::vector<std::string>{"scan"},
                                                  {"explain", "Wren"},
                                                  {"capture", "--list"},
                                                  {"catalogue", "show", "Wren"}}) {
    const ProgramResult result = Run(command);
    EXPECT_EQ(result.exitCode, 1u) << command[0];
    EXPECT_THAT(result.output, IsEmpty());
    EXPECT_EQ(result.errors, kMissing);
  }
}

TEST_F(StarterCatalogue, ThatIsBrokenIsToldByItsPath) {
  world_.File(kStarter, "");
  const ProgramResult scan = Run({"scan"});
  EXPECT_EQ(scan.exitCode, 1u);
  EXPECT_EQ(scan.errors, kSaid + "tarnwick: " + kStarter + " is empty; get the catalogue anew\n");
}

std::string Scanned(const Library& library, const char* catalogue) {
  std::string buffer(1 << 20, '\0');
  const int length =
      library.IA_RunMultiPlatformGameScanJson(catalogue, buffer.data(), static_cast<int>(buffer.size()));
  return buffer.substr(0, static_cast<size_t>(length));
}

TEST(TheBuiltStarterCatalogue, IsNeverTakenByTheLibraryItself) {
  desktop::Desktop world;
  world.Folder(kHere);
  world.Executable(kFolder + R"(\Battlefield 1\bf1.exe)");
  world.String(R"(HKEY_LOCAL_MACHINE\SOFTWARE\EA Games\Battlefield 1)", "Install Dir",
               kFolder + R"(\Battlefield 1\)", desktop::View::k32);
  const Library library(TARNWICK_DLL);
  const std::string starter = TestProgramFolder() + "MasterGameList.xml";
  const CurrentDirectory here(kHere);
  // It is there, and would find the game.
  EXPECT_THAT(Scanned(library, starter.c_str()), HasSubstr("bf1.exe"));
  EXPECT_EQ(Scanned(library, nullptr), "[]");
}

}  // namespace
}  // namespace tarnwick::tests
