// tarnwick catalogue fix, for those who keep catalogues.
#include <fmt/format.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/decipher.h"
#include "host/catalogue/check_file.h"
#include "host/catalogue/check_report.h"
#include "host/catalogue/check_text.h"
#include "host/catalogue/fix_encoding.h"
#include "host/commands.h"
#include "host/console.h"
#include "host/failure.h"
#include "host/input_file.h"
#include "host/presentation.h"
#include "host/text_width.h"

namespace tarnwick::host {
namespace {

CatalogueText CheckedInput(const Options& options) {
  CatalogueText file = ReadCatalogueText(options.input);
  if (file.bytes > kMostBytes)
    throw std::runtime_error(fmt::format("{}: {}", options.input, TooLarge(file.bytes).list.front().message));
  if (IsSameFile(options.input, options.output))
    throw std::runtime_error(options.output + " is the file that is read; name another for the output");
  return file;
}

// The steps with their places in the text that they were made on.
std::string StepLines(const std::string& path, std::string_view text, const FixedText& fixed) {
  Findings places;
  for (const FixStep& step : fixed.steps) AddFinding(places, {step.at, step.check, {}, step.message});
  PlaceFindings(places, text);
  std::string lines;
  for (const Finding& step : places.list) {
    lines += PrintableText(fmt::format("{}:{}:{}: fixed[{}]: {}", path, step.line, step.column,
                                       RowOf(step.check).code, step.message)) +
             "\n";
  }
  return lines;
}

struct CountRow {
  Check check;
  const char* one;
  const char* more;
};
constexpr CountRow kCounted[] = {
    {kSwallowedElement, "record put in order", "records put in order"},
    {kWhiteSpace, "text trimmed", "texts trimmed"},
    {kSameName, "equal record left out", "equal records left out"},
    {kUtf16, "conversion from UTF-16", ""},
    {kNoUtf8, "conversion from the declared encoding", ""},
    {kOtherEncoding, "declaration corrected", ""},
    {kByteOrderMark, "byte-order mark taken away", ""},
};

std::string StepCounts(const FixedText& first, const FixedText& second) {
  std::string counts;
  for (const CountRow& row : kCounted) {
    const auto at = static_cast<size_t>(row.check);
    const size_t count = first.counts[at] + second.counts[at];
    if (count > 0) counts += (counts.empty() ? "" : ", ") + Counted(count, row.one, row.more);
  }
  return counts.empty() ? "nothing to fix" : counts;
}

// In the form that was read: enciphered, if that was.
std::string InFormOf(const CatalogueText& file, const std::string& text) {
  if (!file.enciphered) return text;
  std::vector<unsigned char> bytes(text.begin(), text.end());
  if (!EncipherCatalogue(bytes)) throw std::runtime_error("the fixed catalogue could not be enciphered");
  return {bytes.begin(), bytes.end()};
}

}  // namespace

int RunCatalogueFix(const Options& options) {
  const CatalogueText file = CheckedInput(options);
  const FixedText encoded = FixEncoding(file.text);
  const FixedText fixed = FixText(encoded.text);
  WriteResult(options.output, InFormOf(file, fixed.text));
  WriteStandardError(StepLines(options.input, file.text, encoded) +
                     StepLines(options.input, encoded.text, fixed));
  ReportLine(options.input + ": " + StepCounts(encoded, fixed));
  const Findings left = CheckWholeText(fixed.text);
  WriteStandardError(FindingsAsText(options.output, left, false));
  ReportLine(options.output + ": " + FindingCounts(left, false) + (left.list.empty() ? "" : " are left"));
  return kExitSuccess;
}

}  // namespace tarnwick::host
