#include "host/catalogue/check_report.h"

#include <fmt/format.h>

#include "host/list_formats.h"
#include "host/presentation.h"
#include "host/text_width.h"

namespace tarnwick::host {
namespace {

bool IsError(Check check, bool strict) { return strict || RowOf(check).severity == Severity::kError; }

const char* SeverityName(Check check, bool strict) { return IsError(check, strict) ? "error" : "warning"; }

std::string Line(const std::string& path, const Finding& finding, bool strict) {
  const CheckRow& row = RowOf(finding.check);
  const std::string name = finding.record.empty() ? "" : finding.record + ": ";
  return fmt::format("{}:{}:{}: {}[{}]: {}{}; {}", path, finding.line, finding.column,
                     SeverityName(finding.check, strict), row.code, name, finding.message, row.hint);
}

std::string CountedOrNo(size_t count, const char* singular, const char* plural) {
  return count == 0 ? fmt::format("no {}", plural) : Counted(count, singular, plural);
}

}  // namespace

std::string FindingsAsText(const std::string& path, const Findings& findings, bool strict) {
  std::string text;
  for (const Finding& finding : findings.list) text += PrintableText(Line(path, finding, strict)) + "\n";
  return text;
}

std::string FindingsAsJson(const std::string& path, const Findings& findings, bool strict) {
  Rows rows = Rows::array();
  for (const Finding& finding : findings.list) {
    const CheckRow& row = RowOf(finding.check);
    rows.push_back({{"file", path},
                    {"line", finding.line},
                    {"column", finding.column},
                    {"severity", SeverityName(finding.check, strict)},
                    {"code", row.code},
                    {"record", finding.record},
                    {"message", finding.message},
                    {"hint", row.hint}});
  }
  return FormatRows(rows, {}, Format::kJson);
}

std::string FindingCounts(const Findings& findings, bool strict) {
  const size_t errors = findings.errors + (strict ? findings.warnings : 0);
  const size_t warnings = strict ? 0 : findings.warnings;
  const size_t all = findings.errors + findings.warnings;
  const size_t shown = findings.list.size();
  const std::string left = all == shown ? "" : fmt::format("; the first {} are told", shown);
  return fmt::format("{}, {} in {}{}", CountedOrNo(errors, "error", "errors"),
                     CountedOrNo(warnings, "warning", "warnings"),
                     CountedOrNo(findings.records, "record", "records"), left);
}

}  // namespace tarnwick::host
