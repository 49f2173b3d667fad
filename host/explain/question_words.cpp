#include "host/explain/question_words.h"

#include <fmt/format.h>

#include <algorithm>

namespace tarnwick::host {
namespace {

using common::Heard;

struct KindWords {
  QuestionKind kind;
  const char* question;  // {0} the subject, {1} the detail
  const char* miss;
};

constexpr KindWords kWords[] = {
    {QuestionKind::kOpenKey, "open key {0}", "key {0} doesn't exist"},
    {QuestionKind::kReadValue, "read value {1} of key {0}", "key {0} has no value {1}"},
    {QuestionKind::kListSubkeys, "list subkeys of {0}", "the subkeys of {0} can't be listed"},
    {QuestionKind::kListValues, "list values of {0}", "the values of {0} can't be listed"},
    {QuestionKind::kAttributes, "look for {0}", "{0} doesn't exist"},
    {QuestionKind::kStatus, "look for {0}", "{0} doesn't exist"},
    {QuestionKind::kListFolder, "list folder {0}", "folder {0} can't be listed"},
    {QuestionKind::kReadTextFile, "read file {0}", "file {0} can't be read"},
    {QuestionKind::kReadBinaryFile, "read file {0}", "file {0} can't be read"},
    {QuestionKind::kFileSize, "size of {0}", "the size of {0} isn't known"},
    {QuestionKind::kWriteTime, "write time of {0}", "the write time of {0} isn't known"},
    {QuestionKind::kFullPath, "full path of {0}", "{0} has no full path"},
    {QuestionKind::kKnownFolder, "the folder for {0}", "Windows knows no folder for {0}"},
    {QuestionKind::kEnvironment, "environment variable {0}", "there is no environment variable {0}"},
    {QuestionKind::kExpandText, "expand {0}", "{0} can't be expanded"},
    {QuestionKind::kDrives, "list drives", "the drives can't be listed"},
    {QuestionKind::kDriveType, "is {0} a fixed drive", "the type of drive {0} isn't known"},
    {QuestionKind::kVersionResource, "version of {0}", "{0} has no version resource"},
    {QuestionKind::kProcess, "process {0}", "the process {0} isn't known"},
    {QuestionKind::kIcon, "take the icon of {0} by {1}", "{1} finds no icon of {0}"},
};
static_assert(std::size(kWords) == kQuestionKinds);

const KindWords& WordsOf(QuestionKind kind) { return kWords[static_cast<int>(kind)]; }

bool IsFile(QuestionKind kind) {
  return kind == QuestionKind::kReadTextFile || kind == QuestionKind::kReadBinaryFile;
}

bool IsDenied(const Answer& answer) { return answer.text == "error 5" || answer.text == "refused"; }

std::string InView(const Question& question) {
  return question.view == RegistryView::kNative ? std::string()
                                                : fmt::format(" ({} view)", NameOf(question.view));
}

std::string Filled(const char* words, const Question& question) {
  return fmt::format(fmt::runtime(words), question.subject, question.detail) + InView(question);
}

// Control characters would break the line that this is written into.
std::string OneLine(std::string text) {
  std::replace_if(text.begin(), text.end(), [](unsigned char byte) { return byte < 0x20; }, ' ');
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

// Never within a character of UTF-8.
std::string Cut(const std::string& text, size_t most) {
  if (text.size() <= most) return text;
  size_t end = most;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return text.substr(0, end) + "\u2026";
}

}  // namespace

std::string QuestionInWords(const Question& question) {
  return Filled(WordsOf(question.kind).question, question);
}

std::string MissInWords(const Heard& heard) {
  if (IsDenied(heard.answer)) return QuestionInWords(heard.question) + ": access denied";
  return Filled(WordsOf(heard.question.kind).miss, heard.question);
}

std::string AnswerInWords(const Heard& heard, size_t most) {
  if (!heard.answer.given) return heard.answer.text.empty() ? "nothing" : OneLine(heard.answer.text);
  if (IsFile(heard.question.kind)) return fmt::format("{} bytes", heard.answer.text.size());
  if (heard.answer.text.empty()) return "yes";
  return Cut(OneLine(heard.answer.text), most);
}

}  // namespace tarnwick::host
