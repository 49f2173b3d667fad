#include "host/explain/app_explanation.h"

#include "common/wide_text.h"
#include "foundation/locks.h"
#include "foundation/machine/path_rules.h"
#include "foundation/machine/registry_keys.h"
#include "foundation/text.h"
#include "host/explain/name_folding.h"
#include "host/explain/question_json.h"
#include "host/explain/question_words.h"
#include "inventory/app_cache.h"
#include "inventory/app_queries.h"
#include "inventory/icon_uris.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <exception>
#include <iterator>
#include <sstream>
#include <utility>

namespace tarnwick::host {
namespace {

using common::Heard;
using common::HeardQuestions;
using common::Narrow;
using common::Wide;
using Json = nlohmann::ordered_json;

constexpr const char* kVerdictNames[] = {"listed", "hidden", "nameless", "no executable", "unreadable"};

// One key that holds applications, as the library read it.
struct Uninstall {
  RegistryRoot root = RegistryRoot::kLocalMachine;
  std::string subkey;
  RegistryView view = RegistryView::kNative;
  std::vector<std::string> names;
};

RegistryKey Open(const Uninstall& uninstall, const std::string& name) {
  return OpenSubkey(OpenKey(uninstall.root, Wide(uninstall.subkey), uninstall.view), Wide(name));
}

Uninstall UninstallOf(const Heard& listed) {
  Uninstall uninstall;
  uninstall.view = listed.question.view;
  for (const RegistryRoot root : {RegistryRoot::kLocalMachine, RegistryRoot::kCurrentUser}) {
    const std::string begin = NameOf(root) + std::string("\\");
    if (!listed.question.subject.starts_with(begin)) continue;
    uninstall.root = root;
    uninstall.subkey = listed.question.subject.substr(begin.size());
  }
  std::istringstream lines(listed.answer.text);
  for (std::string line; std::getline(lines, line);) uninstall.names.push_back(line);
  return uninstall;
}

// The keys whose entries the library lists when it makes its list of applications.
std::vector<Uninstall> UninstallKeys() {
  const HeardQuestions questions;
  RefreshCacheNoLock();
  std::vector<Uninstall> keys;
  for (const Heard& heard : questions.All()) {
    if (heard.question.kind == QuestionKind::kListSubkeys) keys.push_back(UninstallOf(heard));
  }
  return keys;
}

bool HasName(const Uninstall& uninstall, const std::string& key, const std::string& folded) {
  if (FoldedName(key).find(folded) != std::string::npos) return true;
  const std::wstring name = ReadRegString(Open(uninstall, key), L"DisplayName");
  return FoldedName(Narrow(name)).find(folded) != std::string::npos;
}

// Runs one step of the library's with the observer on; its questions go behind the application's others.
template <class Step>
std::vector<Heard> Hear(AppExplanation& app, Step&& step) {
  std::vector<Heard> heard;
  {
    const HeardQuestions questions;
    step();
    heard = questions.All();
  }
  app.heard.insert(app.heard.end(), heard.begin(), heard.end());
  return heard;
}

const Heard* AskedFor(const std::vector<Heard>& heard, const char* valueName) {
  const auto found = std::find_if(heard.begin(), heard.end(),
                                  [&](const Heard& one) { return one.question.detail == valueName; });
  return found == heard.end() ? nullptr : &*found;
}

// Why the library made no record of a key. The last value that it asked for tells.
void ExplainNoRecord(const std::vector<Heard>& heard, AppExplanation& app) {
  const Heard* const name = AskedFor(heard, "DisplayName");
  if (name != nullptr) {
    app.verdict = AppVerdict::kNameless;
    app.reason = name->answer.given ? "its DisplayName is empty" : MissInWords(*name);
  } else if (AskedFor(heard, "SystemComponent") != nullptr) {
    app.verdict = AppVerdict::kHidden;
    app.reason = "its SystemComponent is 1: a hidden component";
  } else {
    app.verdict = AppVerdict::kUnreadable;
    app.reason = heard.empty() ? "it can't be opened" : MissInWords(heard.back());
  }
}

std::string NoExecutableReason(const AppRecord& record) {
  if (record.DisplayIcon.empty()) return "it has no DisplayIcon, which names the executable";
  const std::string icon = Narrow(record.DisplayIcon);
  if (!ContainsNoCase(record.DisplayIcon, {L".exe"})) return "its DisplayIcon names no .exe: " + icon;
  const bool file = !FileNameOf(UnquotedHead(record.DisplayIcon)).empty();
  return (file ? "its DisplayIcon names an uninstaller: " : "its DisplayIcon names no file: ") + icon;
}

// By which text a folder was found, told by the library itself, with the other text taken away.
std::string FolderReason(const std::vector<Heard>& heard, AppRecord before, const AppRecord& after) {
  const bool own = !heard.empty() && heard.front().question.kind == QuestionKind::kAttributes &&
                   heard.front().question.detail == "shell, folder";
  if (own && heard.front().answer.given) return "its InstallLocation";
  const std::string why = before.InstallLocation.empty()
                              ? std::string("it has no InstallLocation")
                              : "its InstallLocation " + Narrow(before.InstallLocation) + " is no folder";
  if (after.InstallLocation == before.InstallLocation) {
    return why + ", and neither its DisplayIcon nor its UninstallString names an existing file";
  }
  const std::wstring unresolved = before.InstallLocation;
  before.UninstallString.clear();
  ResolveInstallLocation(before);
  return fmt::format("the folder of its {}, since {}",
                     before.InstallLocation == unresolved ? "UninstallString" : "DisplayIcon", why);
}

void ExplainFolder(AppRecord& record, AppExplanation& app) {
  const AppRecord before = record;
  const std::vector<Heard> heard = Hear(app, [&] { ResolveInstallLocation(record); });
  app.folder = Narrow(record.InstallLocation);
  app.folderReason = FolderReason(heard, before, record);
}

void ExplainRecord(AppRecord record, AppExplanation& app) {
  ExplainFolder(record, app);
  app.listExecutable = Narrow(ListExecutable(record));
  app.pageExecutable = Narrow(PageExecutable(record));
  if (app.listExecutable.empty()) {
    app.verdict = AppVerdict::kNoExecutable;
    app.reason = NoExecutableReason(record);
  }
  if (app.listExecutable.empty() && app.pageExecutable.empty()) return;
  app.icon = ExplainIcon(Hear(app, [&] { LoadAppIconLazy(record); }));
}

void ExplainKey(const Uninstall& uninstall, const std::string& key, AppExplanation& app) {
  AppRecord record;
  bool made = false;
  const std::vector<Heard> heard = Hear(app, [&] {
    const RegistryKey opened = Open(uninstall, key);
    made = opened && ReadAppRecord(opened, record);
  });
  made ? ExplainRecord(std::move(record), app) : ExplainNoRecord(heard, app);
}

AppExplanation ExplainEntry(const Uninstall& uninstall, const std::string& key) {
  AppExplanation app;
  app.key = fmt::format("{}\\{}\\{}", NameOf(uninstall.root), uninstall.subkey, key);
  app.view = uninstall.view;
  app.name = Narrow(ReadRegString(Open(uninstall, key), L"DisplayName"));
  try {
    ExplainKey(uninstall, key, app);
  } catch (const std::exception& error) {  // as in the library, it costs this entry alone
    app.verdict = AppVerdict::kUnreadable;
    app.reason = error.what();
  }
  return app;
}

std::string KeyText(const AppExplanation& app) {
  return fmt::format("{} ({} view)", app.key, NameOf(app.view));
}

void AddDoubles(std::vector<AppExplanation>& apps) {
  for (AppExplanation& app : apps) {
    for (const AppExplanation& other : apps) {
      const bool same = &other != &app && other.verdict == AppVerdict::kListed && other.name == app.name;
      if (same && !app.name.empty()) app.alsoListed.push_back(KeyText(other));
    }
  }
}

std::string ExecutableText(const AppExplanation& app) {
  std::string text;
  if (!app.listExecutable.empty()) text += fmt::format("  executable: {}\n", app.listExecutable);
  if (app.pageExecutable != app.listExecutable) {
    text += fmt::format("  a page of the list shows {}\n",
                        app.pageExecutable.empty() ? "none, and leaves it out" : app.pageExecutable);
  }
  return text;
}

std::string AppText(const AppExplanation& app, bool verbose) {
  std::string text = app.name.empty() ? KeyText(app) : app.name + "\n  " + KeyText(app);
  text += app.verdict == AppVerdict::kListed ? "\n  is in the list\n"
                                             : fmt::format("\n  is not in the list: {}\n", app.reason);
  text += ExecutableText(app);
  if (!app.folderReason.empty()) {
    text +=
        fmt::format("  folder: {}\n    by {}\n", app.folder.empty() ? "none" : app.folder, app.folderReason);
  }
  text += IconExplanationText(app.icon);
  for (const std::string& other : app.alsoListed) text += fmt::format("  also listed from {}\n", other);
  if (!verbose) return text;
  for (const Heard& heard : app.heard) {
    text += fmt::format("    {}: {}\n", QuestionInWords(heard.question), AnswerInWords(heard));
  }
  return text;
}

Json AppJson(const AppExplanation& app) {
  return {{"key", app.key},
          {"view", NameOf(app.view)},
          {"name", app.name},
          {"verdict", NameOf(app.verdict)},
          {"reason", app.reason},
          {"listExecutable", app.listExecutable},
          {"pageExecutable", app.pageExecutable},
          {"folder", app.folder},
          {"folderReason", app.folderReason},
          {"alsoListed", app.alsoListed},
          {"icon", IconExplanationJson(app.icon)},
          {"questions", QuestionsJson(app.heard)}};
}

}  // namespace

const char* NameOf(AppVerdict verdict) { return kVerdictNames[static_cast<int>(verdict)]; }

AppExplanations ExplainApplications(const std::string& name) {
  const CriticalSectionScope lock(g_cacheLock);
  const std::string folded = FoldedName(name);
  AppExplanations explanations{name, {}, 0};
  for (const Uninstall& uninstall : UninstallKeys()) {
    explanations.keys += uninstall.names.size();
    for (const std::string& key : uninstall.names) {
      if (HasName(uninstall, key, folded)) explanations.applications.push_back(ExplainEntry(uninstall, key));
    }
  }
  AddDoubles(explanations.applications);
  return explanations;
}

bool AllListed(const AppExplanations& explanations) {
  const std::vector<AppExplanation>& apps = explanations.applications;
  return !apps.empty() && std::all_of(apps.begin(), apps.end(), [](const AppExplanation& app) {
    return app.verdict == AppVerdict::kListed;
  });
}

std::string AppExplanationsText(const AppExplanations& explanations, bool verbose) {
  if (explanations.applications.empty()) {
    return fmt::format("No Uninstall entry is called '{}' ({} asked).\n", explanations.subject,
                       explanations.keys);
  }
  std::string text;
  for (const AppExplanation& app : explanations.applications) {
    text += (text.empty() ? "" : "\n") + AppText(app, verbose);
  }
  return text;
}

Json AppExplanationsJson(const AppExplanations& explanations) {
  Json apps = Json::array();
  for (const AppExplanation& app : explanations.applications) apps.push_back(AppJson(app));
  return {{"subject", explanations.subject}, {"keys", explanations.keys}, {"applications", std::move(apps)}};
}

}  // namespace tarnwick::host
