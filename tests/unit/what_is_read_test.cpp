// docs/what-is-read.md is made here, from the questions that the sample desktop makes the library ask, and
// held: a place that is read and not told there is a failure. scripts/what-is-read writes it anew.
#include "catalogue/xml_parser.h"
#include "common/heard_questions.h"
#include "common/wide_text.h"
#include "core/catalogue_choice.h"
#include "core/game_details.h"
#include "core/merge.h"
#include "core/scan_json.h"
#include "core/strategy_runner.h"
#include "desktop/description.h"
#include "foundation/com_scope.h"
#include "foundation/machine/data_files.h"
#include "foundation/text.h"
#include "inventory/app_cache.h"
#include "inventory/app_queries.h"
#include "support/debug_capture.h"
#include "support/describe.h"
#include "support/source_folder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

namespace tarnwick {
namespace {

using common::Heard;
using common::HeardQuestions;
using desktop::Desktop;

constexpr char kCatalogue[] = R"(C:\TarnwickDemo\MasterGameList.xml)";

std::filesystem::path PagePath() { return common::Wide(tests::SourceFolder() + "/docs/what-is-read.md"); }

std::string FileText(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// ---- The words of the library: a name that its sources spell out is shown, any other is somebody's own.

struct Words {
  std::set<std::string> whole;       // each literal, in lower case
  std::set<std::string> segments;    // between its backslashes and slashes
  std::set<std::string> extensions;  // with the dot
};

std::vector<std::string> Segments(const std::string& text) {
  std::vector<std::string> segments(1);
  for (const char byte : text) {
    if (byte == '\\' || byte == '/') {
      segments.emplace_back();
    } else {
      segments.back() += byte;
    }
  }
  return segments;
}

std::string ExtensionIn(const std::string& segment) {
  const size_t dot = segment.rfind('.');
  if (dot == std::string::npos || segment.size() - dot > 6) return {};
  const bool plain = std::all_of(segment.begin() + static_cast<std::ptrdiff_t>(dot) + 1, segment.end(),
                                 [](unsigned char byte) { return std::isalpha(byte) != 0; });
  return plain ? segment.substr(dot) : std::string();
}

void AddLiteral(Words& words, const std::string& literal) {
  const std::string lower = ToLowerBytes(literal);
  words.whole.insert(lower);
  for (const std::string& segment : Segments(lower)) {
    words.segments.insert(segment);
    if (const std::string extension = ExtensionIn(segment); extension.size() > 1)
      words.extensions.insert(extension);
  }
}

// A raw literal from behind its R on; `at` is left behind it.
std::string TakeRawLiteral(const std::string& source, size_t& at) {
  const size_t open = source.find('(', at);
  const std::string end = ")" + source.substr(at + 1, open - at - 1) + "\"";
  const size_t close = source.find(end, open);
  at = close + end.size();
  return source.substr(open + 1, close - open - 1);
}

std::string TakeLiteral(const std::string& source, size_t& at) {
  std::string literal;
  for (++at; at < source.size() && source[at] != '"'; ++at) {
    if (source[at] == '\\') ++at;
    literal += source[at];
  }
  ++at;
  return literal;
}

void AddSource(Words& words, const std::string& source) {
  for (size_t at = 0; at < source.size();) {
    if (source.compare(at, 2, "//") == 0 || source[at] == '#') {
      at = std::min(source.find('\n', at), source.size());
    } else if (source.compare(at, 3, "'\"'") == 0) {
      at += 3;
    } else if (source.compare(at, 2, "R\"") == 0) {
      AddLiteral(words, TakeRawLiteral(source, ++at));
    } else if (source[at] == '"') {
      AddLiteral(words, TakeLiteral(source, at));
    } else {
      ++at;
    }
  }
}

Words WordsOfTheLibrary() {
  Words words;
  const std::filesystem::path sources = common::Wide(tests::SourceFolder() + "/src");
  for (const auto& entry : std::filesystem::recursive_directory_iterator(sources)) {
    const std::wstring extension = entry.path().extension();
    if (extension == L".cpp" || extension == L".h") AddSource(words, FileText(entry.path()));
  }
  words.segments.erase("");
  return words;
}

// ---- Names of this machine's, its games' and its users' own as placeholders.

struct Shower {
  Words words;
  std::map<std::string, std::string> folders;  // a known folder's path in lower case -> what it is
};

std::string ShownSegment(const Words& words, const std::string& segment) {
  const std::string lower = ToLowerBytes(segment);
  if (segment.empty() || words.segments.contains(lower)) return segment;
  if (segment.size() == 2 && segment[1] == ':') return lower == "c:" ? "C:" : "<drive>";
  const std::string extension = ExtensionIn(lower);
  return words.extensions.contains(extension) ? "*" + extension : "*";
}

// The longest known folder that the path lies in gives way to its name.
std::string WithKnownFolder(const Shower& shower, const std::string& path) {
  const std::string lower = ToLowerBytes(path);
  size_t longest = 0;
  std::string shown = path;
  for (const auto& [folder, name] : shower.folders) {
    const bool inside =
        lower.starts_with(folder) && (lower.size() == folder.size() || lower[folder.size()] == '\\');
    if (!inside || folder.size() <= longest) continue;
    longest = folder.size();
    shown = "<" + name + ">" + path.substr(folder.size());
  }
  return shown;
}

std::string ShownPlace(const Shower& shower, const std::string& place) {
  std::string shown;
  std::string last;
  for (const std::string& segment : Segments(WithKnownFolder(shower, place))) {
    const std::string next = segment.starts_with("<") ? segment : ShownSegment(shower.words, segment);
    if (next.empty() || (next == "*" && last == "*")) continue;
    shown += (last.empty() ? "" : "\\") + next;
    last = next;
  }
  return shown;
}

bool IsOfTheRegistry(QuestionKind kind) {
  return kind == QuestionKind::kOpenKey || kind == QuestionKind::kListSubkeys ||
         kind == QuestionKind::kListValues;
}

std::string ShownDetail(const Shower& shower, const Question& question) {
  if (question.kind == QuestionKind::kReadValue) {
    return shower.words.whole.contains(ToLowerBytes(question.detail)) ? question.detail : "*";
  }
  if (!IsOfTheRegistry(question.kind)) return question.detail;
  return std::string(NameOf(question.view)) + (question.detail.empty() ? "" : " " + question.detail);
}

// ---- The page.

using Details = std::map<std::string, std::set<std::string>>;  // question -> how it is put
using Places = std::map<std::string, Details>;

std::string CellText(const Details& details) {
  std::string text;
  for (const auto& [kind, ways] : details) {
    text += (text.empty() ? "" : "; ") + kind;
    std::string list;
    for (const std::string& way : ways) {
      if (!way.empty()) list += (list.empty() ? "" : ", ") + way;
    }
    if (!list.empty()) text += " (" + list + ")";
  }
  return text;
}

std::string SectionText(const std::string& title, const Places& places) {
  if (places.empty()) return "## " + title + "\n\nNothing.\n\n";
  std::string text = "## " + title + "\n\n| Where | What is asked |\n|---|---|\n";
  for (const auto& [place, details] : places) {
    text += "| " + (place.empty() ? "the machine" : "`" + place + "`") + " | " + CellText(details) + " |\n";
  }
  return text + "\n";
}

constexpr char kIntroduction[] = R"(# What is read

Every registry key, folder and kind of file that the library ever asks this machine for, by whom. The library reads these
places and writes none of them; it opens no connection and starts no program.

This page is made: the sample desktop (`desktop/samples/sample-desktop.json`), which has a game for each way of finding one,
is scanned with an observer in the machine room (`src/foundation/machine/`), and so is a machine with none of it, where the
other places are tried. What was asked stands here. A test compares it with a new run; after a change in what is read,
`scripts/what-is-read` writes it anew.

Names that the library knows are spelled out. A star stands for what others name: a game, an app id, a package, a user, a
folder or a value that the catalogue, the registry or a launcher's file names. `<common data>` and its like are the folders
that the shell tells, `<drive>` is any fixed drive but C:.

An icon call opens the file and reads what it likes of it; here stands the first one, since that gives the icons of the
sample desktop, and behind it come the others that `src/inventory/icon_calls.h` lists. Where an application names no icon but
an installer's, its folder and two levels below it are searched. Not here: the name of the foreground process, for the focus
watch.

)";

std::string PageText(const std::vector<std::string>& askers, const std::map<std::string, Places>& heard) {
  std::string page = kIntroduction;
  for (const std::string& asker : askers) {
    const auto places = heard.find(asker);
    page += SectionText(asker, places == heard.end() ? Places() : places->second);
  }
  page.pop_back();
  return page;
}

Shower MakeShower(const std::vector<Heard>& all) {
  Shower shower{WordsOfTheLibrary(), {}};
  for (const Heard& one : all) {
    if (one.question.kind == QuestionKind::kKnownFolder)
      shower.folders[ToLowerBytes(one.answer.text)] = one.question.subject;
  }
  return shower;
}

std::map<std::string, Places> Gathered(const std::vector<Heard>& all) {
  const Shower shower = MakeShower(all);
  std::map<std::string, Places> gathered;
  for (const Heard& one : all) {
    const Question& question = one.question;
    const bool named = question.kind == QuestionKind::kKnownFolder || question.kind == QuestionKind::kProcess;
    const std::string place = named ? question.subject : ShownPlace(shower, question.subject);
    gathered[question.asker][place][NameOf(question.kind)].insert(ShownDetail(shower, question));
  }
  return gathered;
}

// ---- The run.

constexpr char kChoosing[] = "Reading the catalogue";
constexpr char kResultIcons[] = "The icons of what a scan found";
constexpr char kApplications[] = "The list of installed applications";
constexpr char kLookups[] = "Looking up games among the applications";
constexpr char kDetails[] = "The details of one executable";

GameList AskForCatalogue() {
  const AskingAs asking(kChoosing);
  return XmlParser::LoadGameListFromXml(ChooseCatalogue(kCatalogue));
}

void AskForResultIcons(const ScanResults& results) {
  const AskingAs asking(kResultIcons);
  WriteScanJson(MergeResults(results));
}

void AskForApplications() {
  const AskingAs asking(kApplications);
  RefreshCacheNoLock();
  AppsListJson(g_appCache, nullptr);
}

void AskForLookups() {
  const AskingAs asking(kLookups);
  const std::string request = R"([{"name":"x","exeName":"fernpad.exe","exePath":"bin"}])";
  std::string ignored;
  ReadWholeFile(common::Wide(kCatalogue), ignored);
  FoundGamesJson(g_appCache, ParseGameQueryList(request.c_str()));
}

void AskForDetails() {
  const AskingAs asking(kDetails);
  char buffer[16];
  WriteGameDetails(R"(C:\Games\Lantern Harbour\lantern.exe)", buffer, sizeof buffer);
}

std::vector<std::string> AskEverything() {
  const ComScope com;
  const tests::DebugCapture quiet;
  AskForResultIcons(RunStrategies(AskForCatalogue(), ScanStrategies));
  g_appCache.clear();
  AskForApplications();
  AskForLookups();
  g_appCache.clear();
  AskForDetails();
  std::vector<std::string> askers = {kChoosing};
  for (const ScanStrategy& strategy : ScanStrategies()) askers.push_back(strategy.name);
  askers.insert(askers.end(), {kResultIcons, kApplications, kLookups, kDetails});
  return askers;
}

void AskOnABareMachine(const GameList& games) {
  const tests::DebugCapture quiet;
  RunStrategies(games, ScanStrategies);
}

void BuildSample(Desktop& desktop) {
  const std::filesystem::path sample =
      common::Wide(tests::SourceFolder() + "/desktop/samples/sample-desktop.json");
  ApplyDescription(desktop, FileText(sample));
}

// Its icon is an installer's, so that its folder is searched for another.
void AddApplicationWithoutIcon(Desktop& desktop) {
  constexpr char kKey[] =
      R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\Sootling)";
  constexpr char kFolder[] = R"(C:\Program Files\Sootling)";
  desktop.String(kKey, "DisplayName", "Sootling", desktop::View::k64);
  desktop.String(kKey, "InstallLocation", kFolder, desktop::View::k64);
  desktop.String(kKey, "DisplayIcon", kFolder + std::string("\\setup.exe"), desktop::View::k64);
  desktop.Executable(kFolder + std::string("\\bin\\sootling.exe"), {{{{{32, 0x3366CC}}}}, {}, 0});
}

TEST(WhatIsRead, ThePageTellsWhatTheSampleDesktopMakesTheLibraryAsk) {
  Desktop desktop;
  BuildSample(desktop);
  AddApplicationWithoutIcon(desktop);
  const HeardQuestions heard;
  const GameList games = AskForCatalogue();
  const std::vector<std::string> askers = AskEverything();
  desktop.Remove();
  AskOnABareMachine(games);
  const std::map<std::string, Places> gathered = Gathered(heard.All());
  EXPECT_FALSE(gathered.contains("")) << "a question without an asker";
  const std::string page = PageText(askers, gathered);
  if (const char* write = std::getenv("TARNWICK_WRITE_PAGES");
      write != nullptr && std::string(write) == "1") {
    std::ofstream(PagePath(), std::ios::binary) << page;
  }
  EXPECT_EQ(FileText(PagePath()), page) << "scripts/what-is-read writes the page anew";
}

// What a scan finds, and what it says of it, doesn't depend on whether somebody listens.
TEST(WhatIsRead, ListeningChangesNothing) {
  Desktop desktop;
  BuildSample(desktop);
  const auto scan = [] {
    const tests::DebugCapture log;
    const ScanResults results = RunStrategies(AskForCatalogue(), ScanStrategies);
    std::vector<std::string> said = log.Lines();
    std::sort(said.begin(), said.end());
    const std::vector<std::string> found = tests::Describe(results);
    said.insert(said.end(), found.begin(), found.end());
    return said;
  };
  const std::vector<std::string> alone = scan();
  const HeardQuestions heard;
  EXPECT_EQ(scan(), alone);
  EXPECT_GT(heard.All().size(), 400u);
}

}  // namespace
}  // namespace tarnwick
