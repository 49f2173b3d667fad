#include "host/log_capture.h"

#include "foundation/log.h"
#include "foundation/windows_api.h"

#include <gmock/gmock.h>

#include <regex>
#include <stdexcept>
#include <thread>

namespace tarnwick::host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr DWORD kWideText = 0x4001000A;

std::vector<LogEntry> EntriesOf(const std::function<void()>& body) {
  std::vector<LogEntry> entries;
  {
    const LogCapture capture([&](const LogEntry& entry) { entries.push_back(entry); });
    body();
  }
  return entries;
}

std::vector<std::string> TextsOf(const std::function<void()>& body) {
  std::vector<std::string> texts;
  for (const LogEntry& entry : EntriesOf(body)) texts.push_back(entry.text);
  return texts;
}

// The exceptions of the debug output go on where nobody handles them; other handlers may be there all the
// same.
LONG CALLBACK GoOn(EXCEPTION_POINTERS* pointers) {
  const DWORD code = pointers->ExceptionRecord->ExceptionCode;
  return code == DBG_PRINTEXCEPTION_C || code == kWideText ? EXCEPTION_CONTINUE_EXECUTION
                                                           : EXCEPTION_CONTINUE_SEARCH;
}

void Raise(DWORD code, std::vector<ULONG_PTR> parameters) {
  void* handler = AddVectoredExceptionHandler(0, GoOn);
  RaiseException(code, 0, static_cast<DWORD>(parameters.size()), parameters.data());
  RemoveVectoredExceptionHandler(handler);
}

void RaiseWide(const std::wstring& text) {
  Raise(kWideText, {text.size() + 1, reinterpret_cast<ULONG_PTR>(text.c_str())});
}

void RaiseNarrow(const std::string& text) {
  Raise(DBG_PRINTEXCEPTION_C, {text.size() + 1, reinterpret_cast<ULONG_PTR>(text.c_str())});
}

TEST(HostLogCapture, TakesTheLibrarysLinesWithTheirStamps) {
  const std::vector<LogEntry> entries =
      EntriesOf([] { SendRawDebugText("[Tarnwick] [2026-01-02 03:04:05.678] Loaded 5 games\n"); });
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].text, "Loaded 5 games");
  EXPECT_EQ(entries[0].stamp, "2026-01-02 03:04:05.678");
  EXPECT_EQ(entries[0].threadId, GetCurrentThreadId());
}

TEST(HostLogCapture, ALineWithoutAStampHasTheTimeItCame) {
  SYSTEMTIME now;
  GetLocalTime(&now);
  const std::vector<LogEntry> entries = EntriesOf([] { LogStream() << "[Steam] Found\n"; });
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_TRUE(std::regex_match(entries[0].stamp, std::regex(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3})")));
  EXPECT_EQ(entries[0].stamp.substr(0, 4), std::to_string(now.wYear));
}

TEST(HostLogCapture, EveryWayOfLoggingIsHeardOnce) {
  EXPECT_THAT(
      TextsOf([] {
        LogLine("by line");
        LogStream() << "by stream\n";
        SendRawDebugText("[Tarnwick] raw, without a line feed");
        SendRawDebugText("[Tarnwick] \nraw, with many\n\n");
        SendRawDebugText("[GameUXRegistrySearch] SEH Error processing subkey: x (Exception Code: 0x1)\n");
        OutputDebugStringW(L"[TarnwickXml] Parsed 3 games.\n");
      }),
      ElementsAre("by line", "by stream", "raw, without a line feed", "raw, with many",
                  "[GameUXRegistrySearch] SEH Error processing subkey: x (Exception Code: 0x1)",
                  "[TarnwickXml] Parsed 3 games."));
}

TEST(HostLogCapture, OtherModulesTextsAreLeftAlone) {
  EXPECT_THAT(TextsOf([] {
                OutputDebugStringA("some driver: Found: x -> y\n");
                OutputDebugStringA("");
                OutputDebugStringW(L"\n[Tarnwick] not at the beginning\n");
                OutputDebugStringA("[GameUXRegistrySearch] of another program");
              }),
              IsEmpty());
}

TEST(HostLogCapture, NonAsciiLinesAreUtf8) {
  EXPECT_THAT(TextsOf([] { LogStream() << "\u041c\u0438\u0440 \u6e38\n"; }),
              ElementsAre("\u041c\u0438\u0440 \u6e38"));
  EXPECT_THAT(TextsOf([] {
                RaiseWide(L"[Tarnwick] \u6e38\U0001F600");
                RaiseNarrow("[Tarnwick] ???");
              }),
              ElementsAre("\u6e38\U0001F600"));
}

TEST(HostLogCapture, ALineInTheAnsiPageBecomesUtf8) {
  if (GetACP() != 1252) GTEST_SKIP() << "the ANSI page here is " << GetACP();
  EXPECT_THAT(TextsOf([] { RaiseNarrow("[Tarnwick] Ch\xE2teau"); }), ElementsAre("Ch\u00e2teau"));
}

TEST(HostLogCapture, AWideLineThatIsOfferedAgainIsOneLine) {
  EXPECT_THAT(TextsOf([] {
                RaiseWide(L"[Tarnwick] \u6e38");
                RaiseNarrow("[Tarnwick] ?");
                RaiseNarrow("[Tarnwick] next");
              }),
              ElementsAre("\u6e38", "next"));
}

TEST(HostLogCapture, AForeignWideTextHidesNoLine) {
  EXPECT_THAT(TextsOf([] {
                RaiseWide(L"some driver");
                Raise(kWideText, {});
                RaiseNarrow("[Tarnwick] next");
              }),
              ElementsAre("next"));
}

TEST(HostLogCapture, ExceptionsWithOddParametersAreNoLines) {
  const char text[] = "[Tarnwick] text";
  const auto pointer = reinterpret_cast<ULONG_PTR>(&text);
  EXPECT_THAT(TextsOf([&] {
                for (const DWORD code : {DBG_PRINTEXCEPTION_C, kWideText}) {
                  Raise(code, {});
                  Raise(code, {sizeof text});
                  Raise(code, {sizeof text, 0});
                  Raise(code, {sizeof text, 16});
                  Raise(code, {sizeof text, ~ULONG_PTR{0}});
                  Raise(code, {0, pointer});
                  Raise(code, {~ULONG_PTR{0}, pointer});
                  Raise(code, {ULONG_PTR{1} << 40, pointer});
                  Raise(code, {ULONG_PTR{1} << 19, 0x7FFFFFFF0000});
                }
              }),
              IsEmpty());
}

TEST(HostLogCapture, ATextEndsAtItsFirstZero) {
  EXPECT_THAT(TextsOf([] { RaiseNarrow(std::string("[Tarnwick] a\0b", 14)); }), ElementsAre("a"));
}

TEST(HostLogCapture, WhatASinkThrowsEndsInTheHandler) {
  int calls = 0;
  {
    const LogCapture capture([&](const LogEntry&) {
      ++calls;
      if (calls == 1) throw std::runtime_error("no");
      throw 42;
    });
    LogLine("one");
    std::thread([] { LogStream() << "two\n"; }).join();
  }
  EXPECT_EQ(calls, 2);
}

TEST(HostLogCapture, ASinkThatCausesDebugOutputItselfIsNotCalledAgain) {
  int calls = 0;
  {
    const LogCapture capture([&](const LogEntry&) {
      ++calls;
      LogLine("from the sink");
    });
    LogLine("one");
  }
  EXPECT_EQ(calls, 1);
}

TEST(HostLogCapture, LinesOfManyThreadsComeOneAtATime) {
  const std::vector<std::string> texts = TextsOf([] {
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t) {
      threads.emplace_back([t] {
        for (int i = 0; i < 50; ++i) LogLine("thread " + std::to_string(t));
      });
    }
    for (std::thread& thread : threads) thread.join();
  });
  EXPECT_EQ(texts.size(), 400u);
}

}  // namespace
}  // namespace tarnwick::host
