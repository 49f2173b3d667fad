// Questions, misses and answers as people read them.
#include "host/explain/question_words.h"

#include <gtest/gtest.h>

#include <set>

namespace tarnwick {
namespace {

using common::Heard;
using host::AnswerInWords;
using host::MissInWords;
using host::QuestionInWords;

Question About(QuestionKind kind, const std::string& subject, const std::string& detail = "",
               RegistryView view = RegistryView::kNative) {
  return {kind, subject, detail, view, {}};
}

TEST(HostQuestionWords, SayWhatWasAsked) {
  EXPECT_EQ(QuestionInWords(About(QuestionKind::kReadValue, "HKEY_LOCAL_MACHINE\\A", "InstallLocation")),
            "read value InstallLocation of key HKEY_LOCAL_MACHINE\\A");
  EXPECT_EQ(QuestionInWords(About(QuestionKind::kOpenKey, "HKEY_LOCAL_MACHINE\\A", "", RegistryView::k32)),
            "open key HKEY_LOCAL_MACHINE\\A (32-bit view)");
  EXPECT_EQ(QuestionInWords(About(QuestionKind::kAttributes, "C:\\a.exe", "narrow")), "look for C:\\a.exe");
}

TEST(HostQuestionWords, SayWhatIsMissing) {
  EXPECT_EQ(MissInWords({About(QuestionKind::kReadValue, "HKEY_LOCAL_MACHINE\\A", "InstallLocation"),
                         {false, "no such value"}}),
            "key HKEY_LOCAL_MACHINE\\A has no value InstallLocation");
  EXPECT_EQ(MissInWords({About(QuestionKind::kAttributes, "C:\\Games\\X\\x.exe"), {false, "error 2"}}),
            "C:\\Games\\X\\x.exe doesn't exist");
}

TEST(HostQuestionWords, NameTheCallThatAnIconIsTakenBy) {
  const Question question = About(QuestionKind::kIcon, "C:\\a.exe", "ExtractIconExW #3");
  EXPECT_EQ(QuestionInWords(question), "take the icon of C:\\a.exe by ExtractIconExW #3");
  EXPECT_EQ(MissInWords({question, {false, "none"}}), "ExtractIconExW #3 finds no icon of C:\\a.exe");
}

TEST(HostQuestionWords, TellAccessDeniedFromMissing) {
  EXPECT_EQ(MissInWords({About(QuestionKind::kOpenKey, "HKEY_LOCAL_MACHINE\\A"), {false, "error 5"}}),
            "open key HKEY_LOCAL_MACHINE\\A: access denied");
  EXPECT_EQ(MissInWords({About(QuestionKind::kListFolder, "C:\\A"), {false, "refused"}}),
            "list folder C:\\A: access denied");
}

TEST(HostQuestionWords, HaveAnotherMissForEveryKindButTheTwoOfPathsAndOfFiles) {
  std::set<std::string> misses;
  for (int kind = 0; kind < kQuestionKinds; ++kind) {
    misses.insert(MissInWords({About(static_cast<QuestionKind>(kind), "S", "D"), {false, "error 2"}}));
  }
  EXPECT_EQ(misses.size(), static_cast<size_t>(kQuestionKinds) - 2);
}

TEST(HostQuestionWords, TellAnswersInOneShortLine) {
  EXPECT_EQ(AnswerInWords({About(QuestionKind::kListSubkeys, "K"), {true, "one\ntwo\n"}}), "one two");
  EXPECT_EQ(AnswerInWords({About(QuestionKind::kReadTextFile, "F"), {true, "12345"}}), "5 bytes");
  EXPECT_EQ(AnswerInWords({About(QuestionKind::kOpenKey, "K"), {true, ""}}), "yes");
  EXPECT_EQ(AnswerInWords({About(QuestionKind::kReadValue, "K", "V"), {true, "\u00e9\u00e9\u00e9"}}, 3),
            "\u00e9\u2026");
}

TEST(HostQuestionWords, TellWhyNothingCame) {
  EXPECT_EQ(AnswerInWords({About(QuestionKind::kOpenKey, "K"), {false, "error 2"}}), "error 2");
  EXPECT_EQ(AnswerInWords({About(QuestionKind::kFullPath, "P"), {false, ""}}), "nothing");
}

}  // namespace
}  // namespace tarnwick
