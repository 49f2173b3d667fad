#include "host/catalogue_file.h"

#include "catalogue/decipher.h"
#include "desktop/desktop.h"
#include "support/current_directory.h"
#include "support/locked_path.h"
#include "support/utf16_bytes.h"

#include <gmock/gmock.h>

#include <set>
#include <stdexcept>
#include <vector>

namespace tarnwick::host {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

const std::string kFolder = R"(C:\TarnwickTest\CatalogueFile)";
const std::string kFile = kFolder + R"(\Каталог.xml)";
const std::string kRecord = "<GameSignature><DisplayName>A</DisplayName></GameSignature>";

std::string Enciphered(const std::string& text) {
  std::vector<unsigned char> bytes(text.begin(), text.end());
  EXPECT_TRUE(EncipherCatalogue(bytes));
  return {bytes.begin(), bytes.end()};
}

CatalogueFile Inspect(const std::string& bytes) {
  desktop::Desktop world;
  world.File(kFile, bytes);
  return InspectCatalogue(kFile);
}

TEST(HostCatalogueFile, TakesAPlainAndAnEncipheredCatalogue) {
  const CatalogueFile plain = Inspect("\n" + kRecord + kRecord);
  EXPECT_THAT(plain.fault, IsEmpty());
  EXPECT_FALSE(plain.enciphered);
  EXPECT_EQ(plain.records, 2u);
  const CatalogueFile cipher = Inspect(Enciphered(kRecord));
  EXPECT_THAT(cipher.fault, IsEmpty());
  EXPECT_TRUE(cipher.enciphered);
  EXPECT_EQ(cipher.text, kRecord);
}

TEST(HostCatalogueFile, TakesWhatTheLibraryReadsThoughItTriesToDecipherIt) {
  const CatalogueFile marked = Inspect("\xEF\xBB\xBF" + kRecord);
  EXPECT_THAT(marked.fault, IsEmpty());
  EXPECT_FALSE(marked.enciphered);
}

// The record as a catalogue of UTF-16.
std::string Utf16Record(bool bigEndian, bool mark) {
  return tests::Utf16Bytes((mark ? L"\uFEFF" : L"") + std::wstring(kRecord.begin(), kRecord.end()),
                           bigEndian);
}

TEST(HostCatalogueFile, KnowsUtf16InEveryForm) {
  for (const bool bigEndian : {false, true}) {
    for (const bool mark : {false, true}) {
      EXPECT_THAT(Inspect(Utf16Record(bigEndian, mark)).fault, HasSubstr("save it as UTF-8"));
    }
  }
  EXPECT_THAT(Inspect(Enciphered(Utf16Record(false, true))).fault, HasSubstr("UTF-16"));
}

TEST(HostCatalogueFile, KnowsCipherTextThatWasSpoilt) {
  std::string cut = Enciphered(kRecord + kRecord);
  cut.resize(cut.size() - 5);
  EXPECT_THAT(Inspect(cut).fault, HasSubstr("can't be deciphered"));
  std::string changed = Enciphered(kRecord + kRecord);
  changed.back() = static_cast<char>(changed.back() ^ 0x55);
  EXPECT_THAT(Inspect(changed).fault, HasSubstr("can't be deciphered"));
}

TEST(HostCatalogueFile, KnowsWhatIsNoCatalogue) {
  for (const char* text : {"<html></html>", "Dear diary, \xC3\xA4", " \r\n ", "<ArrayOfGameSignature/>"}) {
    EXPECT_THAT(Inspect(text).fault, HasSubstr(" is not a catalogue: it holds no <GameSignature>"));
  }
  EXPECT_THAT(Inspect(Enciphered("<html></html>")).fault, HasSubstr("deciphers, but is not a catalogue"));
  EXPECT_THAT(Inspect(Enciphered("")).fault, HasSubstr("deciphers, but is not a catalogue"));
}

TEST(HostCatalogueFile, EveryFaultIsALineOfItsOwnThatNamesTheFileAndSaysWhatToDo) {
  std::vector<std::string> faults = {InspectCatalogue(kFile).fault};
  {
    desktop::Desktop world;
    world.File(kFile);
    const tests::LockedPath locked(kFile);
    faults.push_back(InspectCatalogue(kFile).fault);
  }
  {
    desktop::Desktop world;
    world.Folder(kFile);
    faults.push_back(InspectCatalogue(kFile).fault);
  }
  for (const std::string& bytes : {std::string(), Utf16Record(true, true), std::string(100, '\x01'),
                                   std::string("text"), std::string("<GameSignature>")}) {
    faults.push_back(Inspect(bytes).fault);
  }
  for (const std::string& fault : faults) {
    EXPECT_THAT(fault, StartsWith(kFile + " "));
    EXPECT_THAT(fault, HasSubstr("; "));
    EXPECT_EQ(fault.find('\n'), fault.npos);
  }
  EXPECT_EQ(std::set<std::string>(faults.begin(), faults.end()).size(), faults.size());
}

std::string Warning(const std::string& text) { return CatalogueWarning("x.xml", Inspect(text)); }

TEST(HostCatalogueFile, WarnsOfRecordsThatTheLibraryDoesNotRead) {
  EXPECT_EQ(Warning(kRecord + kRecord), "");
  EXPECT_EQ(Warning(kRecord + "<GameSignature>" + kRecord),
            "x.xml opens 3 records, closes 2; the library read 2");
  EXPECT_EQ(Warning(kRecord + "<GameSignature>"), "x.xml opens 2 records, closes 1; the library read 1");
  // An opening tag with a blank in it is none to the library.
  EXPECT_EQ(Warning("<GameSignature ></GameSignature>" + kRecord),
            "x.xml opens 1 record, closes 2; the library read 1");
}

TEST(HostCatalogueFile, TheNamedCatalogueIsTheOneToScanThereOrNot) {
  EXPECT_EQ(CatalogueToScan("no such file.xml"), "no such file.xml");
}

TEST(HostCatalogueFile, WithoutANameTheLibrarysOrderHolds) {
  desktop::Desktop world;
  world.Folder(kFolder);
  const tests::CurrentDirectory here(kFolder);
  EXPECT_THROW(CatalogueToScan(""), std::runtime_error);
  world.File(kFolder + R"(\MasterGameList.xml)", "");
  EXPECT_EQ(CatalogueToScan(""), "MasterGameList.xml");
  world.File(kFolder + R"(\MasterGameList_decrypted.xml)", "");
  EXPECT_EQ(CatalogueToScan(""), "MasterGameList_decrypted.xml");
}

}  // namespace
}  // namespace tarnwick::host
