// tarnwick explain
#include <nlohmann/json.hpp>

#include "host/command_output.h"
#include "host/commands.h"
#include "host/console.h"
#include "host/explain/app_explanation.h"
#include "host/explain/explanation.h"
#include "host/explain/explanation_json.h"
#include "host/explain/explanation_text.h"
#include "host/explain/path_explanation.h"
#include "host/scan_listener.h"

namespace tarnwick::host {
namespace {

// No game has a backslash in its name, and a slash or a colon in many a name is no path yet.
bool IsPath(const std::string& text) {
  const bool drive = text.size() > 2 && text[1] == ':' && (text[2] == '\\' || text[2] == '/');
  return drive || text.find('\\') != std::string::npos;
}

ObservedScan ScanWithLog(const Options& asked) {
  const Options options = WithStarterCatalogue(asked);
  CheckedCatalogue(options);
  ScanListener listener(options);
  return ObserveScan(options.catalogue, [&](const LogEntry& entry) { listener.Hear(entry); });
}

// What isn't UTF-8 in the registry is replaced, as the library's own JSON can't hold it either.
void WriteJson(const Options& options, const nlohmann::ordered_json& json) {
  WriteResult(options.output,
              json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n");
}

int ExplainTheName(const Options& options) {
  const Explanation explanation = ExplainName(ScanWithLog(options), options.input);
  WriteResult(options.output, options.format == Format::kJson
                                  ? ExplanationJson(explanation) + "\n"
                                  : ExplanationText(explanation, {TableWidth(options), options.verbose}));
  const bool found = !explanation.records.empty() && CountMissing(explanation) == 0;
  return found ? kExitSuccess : kExitFailure;
}

int ExplainThePath(const Options& options) {
  const PathExplanation explanation = ExplainPath(options.input, ScanWithLog(options));
  if (options.format == Format::kJson)
    WriteJson(options, PathExplanationJson(explanation));
  else
    WriteResult(options.output, PathExplanationText(explanation, options.verbose));
  return IsFound(explanation) ? kExitSuccess : kExitFailure;
}

int ExplainTheApplication(const Options& options) {
  LogOutput log(options);
  const LogCapture capture([&](const LogEntry& entry) { log.Write(entry); });
  const AppExplanations explanations = ExplainApplications(options.application);
  if (options.format == Format::kJson)
    WriteJson(options, AppExplanationsJson(explanations));
  else
    WriteResult(options.output, AppExplanationsText(explanations, options.verbose));
  return AllListed(explanations) ? kExitSuccess : kExitFailure;
}

}  // namespace

int RunExplain(const Options& options) {
  if (!options.application.empty()) return ExplainTheApplication(options);
  return IsPath(options.input) ? ExplainThePath(options) : ExplainTheName(options);
}

}  // namespace tarnwick::host
