// docs/catalogue-checks.md, which lists every code with an example.
#include "catalogue/decipher.h"
#include "common/wide_text.h"
#include "host/catalogue/check_file.h"
#include "host/catalogue/check_text.h"
#include "support/source_folder.h"

#include <gmock/gmock.h>

#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace tarnwick::host {
namespace {

struct Entry {
  std::string heading;
  std::string form;  // the word behind "xml"
  std::string example;
  std::string toDo;
};

std::vector<Entry> ReadPage() {
  std::ifstream file(tests::SourceFolder() + "/docs/catalogue-checks.md", std::ios::binary);
  std::vector<Entry> entries;
  bool inside = false;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("## TC")) entries.push_back({line.substr(3), {}, {}, {}});
    if (entries.empty()) continue;
    Entry& entry = entries.back();
    if (line.starts_with("```")) {
      inside = !inside;
      if (inside && line.size() > 7) entry.form = line.substr(7);
    } else if (inside) {
      entry.example += line + "\n";
    } else if (line.starts_with("What to do: ")) {
      entry.toDo = line.substr(12);
    }
  }
  return entries;
}

std::string AsUtf16(const std::string& text) {
  std::string bytes;
  for (const wchar_t unit : common::Wide(text))
    bytes += {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
  return bytes;
}

std::string AsLatin(const std::string& text) {
  std::string bytes;
  for (const wchar_t unit : common::Wide(text)) bytes += static_cast<char>(unit);
  return bytes;
}

std::string AsCutCipher(const std::string& text) {
  std::vector<unsigned char> bytes(text.begin(), text.end());
  EXPECT_TRUE(EncipherCatalogue(bytes));
  return {bytes.begin(), bytes.end() - 1};
}

std::string InForm(const Entry& entry) {
  static const std::map<std::string, std::function<std::string(const std::string&)>> kForms = {
      {"", [](const std::string& text) { return text; }},
      {"utf-16le", AsUtf16},
      {"windows-1252", AsLatin},
      {"cut-cipher", AsCutCipher},
      {"larger-than-64-MiB", [](const std::string& text) { return text + std::string(kMostBytes, ' '); }},
      {"byte-order-mark", [](const std::string& text) { return "\xEF\xBB\xBF" + text; }},
  };
  return kForms.at(entry.form)(entry.example);
}

TEST(CatalogueCheckPage, EachExampleGivesExactlyItsCode) {
  for (const Entry& entry : ReadPage()) {
    std::vector<std::string> codes;
    for (const Finding& finding : CheckWholeText(InForm(entry)).list)
      codes.emplace_back(RowOf(finding.check).code);
    EXPECT_THAT(codes, testing::ElementsAre(entry.heading.substr(0, 5))) << entry.example;
  }
}

TEST(CatalogueCheckPage, ListsEveryCodeWithItsSeverityTitleAndHint) {
  const std::vector<Entry> entries = ReadPage();
  ASSERT_EQ(entries.size(), kChecks.size());
  for (size_t i = 0; i < kChecks.size(); ++i) {
    const CheckRow& row = kChecks[i];
    const std::string severity = row.severity == Severity::kError ? "error" : "warning";
    EXPECT_EQ(entries[i].heading, std::string(row.code) + " " + severity + ": " + std::string(row.title));
    EXPECT_EQ(entries[i].toDo, std::string(row.hint) + ".");
  }
}

}  // namespace
}  // namespace tarnwick::host
