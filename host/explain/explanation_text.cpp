#include "host/explain/explanation_text.h"

#include "host/explain/question_words.h"
#include "host/presentation.h"
#include "host/text_width.h"
#include "host/text_wrap.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace tarnwick::host {
namespace {

constexpr size_t kNameColumns = 26;    // the longest strategy's
constexpr size_t kVerdictColumns = 9;  // "not tried"
constexpr size_t kReasonAt = 2 + 1 + 2 + kNameColumns + 2 + kVerdictColumns + 2;
constexpr size_t kNarrowReasonAt = 7;
constexpr size_t kLeastReason = 24;

const std::pair<const char*, const char*> kHives[] = {{"HKEY_LOCAL_MACHINE", "HKLM"},
                                                      {"HKEY_CURRENT_USER", "HKCU"},
                                                      {"HKEY_CLASSES_ROOT", "HKCR"},
                                                      {"HKEY_USERS", "HKU"}};

std::string WithShortHives(std::string text) {
  for (const auto& [name, shortName] : kHives) {
    const std::string hive = name;
    for (size_t at = text.find(hive); at != std::string::npos; at = text.find(hive, at))
      text.replace(at, hive.size(), shortName);
  }
  return text;
}

std::string Capital(std::string text) {
  if (!text.empty() && text.front() >= 'a' && text.front() <= 'z')
    text.front() = static_cast<char>(text.front() - 'a' + 'A');
  return text;
}

std::string Padded(const std::string& text, size_t columns) {
  const size_t taken = DisplayColumns(text);
  return text + std::string(taken < columns ? columns - taken : 0, ' ');
}

// `head` and the text behind it, whose further lines begin below its first one.
std::string Hanging(const std::string& head, const std::string& text, size_t width) {
  const size_t indent = DisplayColumns(head);
  const size_t columns = width == 0 ? 0 : std::max(width, indent + 1) - indent;
  std::string block;
  for (const std::string& line : WrappedLines(WithShortHives(text), columns)) {
    block += (block.empty() ? head : std::string(indent, ' ')) + line;
    block.erase(block.find_last_not_of(' ') + 1);
    block += '\n';
  }
  return block;
}

std::string StrategyLine(const StrategyVerdict& verdict, size_t width) {
  std::string head = fmt::format("  {}  {}  {}", verdict.level, Padded(verdict.strategy, kNameColumns),
                                 Padded(NameOf(verdict.verdict), kVerdictColumns));
  if (width == 0 || width >= kReasonAt + kLeastReason) return Hanging(head + "  ", verdict.reason, width);
  head = fmt::format("  {}  {}: {}", verdict.level, verdict.strategy, NameOf(verdict.verdict));
  return Hanging("", head, width) + Hanging(std::string(kNarrowReasonAt, ' '), verdict.reason, width);
}

std::string QuestionLine(const Heard& heard, size_t width) {
  const std::string head = heard.answer.given ? "       + " : "       - ";
  return Hanging(head, QuestionInWords(heard.question) + ": " + AnswerInWords(heard), width);
}

std::string StrategyBlock(const StrategyVerdict& verdict, const ExplanationStyle& style) {
  std::string block = StrategyLine(verdict, style.width);
  if (!style.verbose) return block;
  for (const Heard& heard : *verdict.questions) block += QuestionLine(heard, style.width);
  return block;
}

std::string NextStep(const GameExplanation& game) {
  if (game.outcome == Outcome::kFailed) return "Next: look at the log of that strategy with --log.";
  if (game.outcome != Outcome::kMissing) return {};
  if (!game.inCatalogue)
    return "Next: add a record to the catalogue, or see above why its launcher's strategy passed it over.";
  if (!game.nearMisses.empty())
    return "Next: compare the names, and what else the catalogue says of the game.";
  return "Next: compare the places that were tried with where the game is; --verbose shows every question.";
}

std::string GameBlock(const GameExplanation& game, const ExplanationStyle& style) {
  std::string block = Hanging("", game.name, style.width);
  block += Hanging("  ", Capital(game.sentence) + ".", style.width) + "\n";
  for (const StrategyVerdict& verdict : game.strategies) block += StrategyBlock(verdict, style);
  if (!game.nearMisses.empty()) block += "\n";
  for (const std::string& miss : game.nearMisses) block += Hanging("  Near miss: ", miss + ".", style.width);
  const std::string next = NextStep(game);
  return next.empty() ? block : block + "\n" + Hanging("  ", next, style.width);
}

std::string NothingNamed(const Explanation& explanation, size_t width) {
  std::string text =
      Hanging("",
              fmt::format("No catalogue record, no launcher and no installed program has '{}' in its name.",
                          explanation.subject),
              width);
  for (const std::string& similar : explanation.similar) text += Hanging("  Did you mean: ", similar, width);
  return text + Hanging("  Next: ", "for an installed application that is no game, ask with --app.", width);
}

std::string Summary(const Explanation& explanation, size_t width) {
  const size_t all = explanation.records.size() + explanation.further;
  if (all < 2) return {};
  std::string text =
      fmt::format("{} have '{}' in their name", Counted(all, "game", "games"), explanation.subject);
  if (explanation.further > 0) {
    text += fmt::format("; these are {} of them. Give more of the name to see the others",
                        explanation.records.size());
  }
  return Hanging("", text + ".", width) + "\n";
}

}  // namespace

size_t CountMissing(const Explanation& explanation) {
  const auto missing = [](const GameExplanation& game) {
    return game.outcome == Outcome::kMissing || game.outcome == Outcome::kFailed;
  };
  return static_cast<size_t>(std::count_if(explanation.records.begin(), explanation.records.end(), missing));
}

std::string ExplanationText(const Explanation& explanation, const ExplanationStyle& style) {
  if (explanation.records.empty()) return NothingNamed(explanation, style.width);
  std::string text = Summary(explanation, style.width);
  for (const GameExplanation& game : explanation.records) {
    if (&game != &explanation.records.front()) text += "\n";
    text += GameBlock(game, style);
  }
  return text;
}

}  // namespace tarnwick::host
