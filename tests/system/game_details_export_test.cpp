// The details of one executable, through the built library.
#include "desktop/desktop.h"
#include "foundation/windows_api.h"
#include "support/debug_capture.h"
#include "support/guarded_buffer.h"
#include "support/library.h"
#include "support/png_pixels.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <objbase.h>
#include <nlohmann/json.hpp>

#include <thread>

namespace tarnwick::tests {
namespace {

constexpr char kFolder[] = R"(C:\TarnwickTest\Details)";
constexpr uint32_t kRed = 0xC02020;

desktop::ExecutableOptions Named(const std::map<std::string, std::string>& values) {
  desktop::ExecutableOptions options;
  options.icons = {{{{32, kRed}}}};
  options.versions = {{0x409, 1200, values}};
  return options;
}

class GameDetailsExport : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return std::string(kFolder) + "\\" + name; }

  std::string Details(const std::string& path) {
    const GuardedBuffer buffer(1 << 20);
    const int length = library_.IA_GetGameDetailsByPathJson(path.c_str(), buffer.Data(), buffer.Size());
    EXPECT_EQ(static_cast<size_t>(length), buffer.Text().size());
    return buffer.Text();
  }

  nlohmann::json Parsed(const std::string& path) { return nlohmann::json::parse(Details(path)); }

  desktop::Desktop desktop_;
  Library library_{TARNWICK_DLL};
};

TEST_F(GameDetailsExport, AnswersWithTheFourMembersInOrder) {
  desktop_.Executable(Path("foo.exe"), Named({{"FileDescription", "Foo the Game"}}));
  const std::string text = Details(Path("foo.exe"));
  EXPECT_THAT(text, testing::StartsWith(R"({"name":"Foo the Game","ico":"data:image/png;base64,)"));
  EXPECT_THAT(text,
              testing::EndsWith(R"(","exepath":"C:\\TarnwickTest\\Details\\foo.exe","exe":"foo.exe"})"));
  const auto json = nlohmann::json::parse(text);
  EXPECT_EQ(json.size(), 4u);
  EXPECT_EQ(DecodePngDataUri(json.at("ico").get<std::string>()).CentreRgb(), kRed);
}

TEST_F(GameDetailsExport, TakesTheProductWhereTheDescriptionIsEmpty) {
  desktop_.Executable(Path("foo.exe"), Named({{"FileDescription", ""}, {"ProductName", "Foo"}}));
  EXPECT_EQ(Parsed(Path("foo.exe")).at("name"), "Foo");
}

TEST_F(GameDetailsExport, WithoutVersionResourceTheNameIsTheStem) {
  for (const auto& [file, name] : std::map<std::string, std::string>{
           {"foo.exe", "foo"}, {"foo.bar.exe", "foo.bar"}, {"no extension", "no extension"}, {".exe", ""}}) {
    desktop_.Executable(Path(file));
    EXPECT_EQ(Parsed(Path(file)).at("name"), name);
    EXPECT_EQ(Parsed(Path(file)).at("exe"), file);
  }
}

TEST_F(GameDetailsExport, MendsTheSecondColonWithTheFullWidthColon) {
  const std::string mended = Path("Foo\xEF\xBC\x9A Bar\\foo.exe");
  desktop_.Executable(mended);
  desktop_.Executable(Path("Foo_ Bar\\foo.exe"));  // comes second
  EXPECT_EQ(Parsed(Path("Foo: Bar\\foo.exe")).at("exepath"), mended);
}

TEST_F(GameDetailsExport, MendsTheSecondColonWithAnUnderscoreOtherwise) {
  desktop_.Executable(Path("Foo_ Bar\\foo.exe"), Named({{"FileDescription", "Foo: Bar"}}));
  const auto json = Parsed(Path("Foo: Bar\\foo.exe"));
  EXPECT_EQ(json.at("exepath"), Path("Foo_ Bar\\foo.exe"));
  EXPECT_EQ(json.at("name"), "Foo: Bar");
  EXPECT_EQ(DecodePngDataUri(json.at("ico").get<std::string>()).CentreRgb(), kRed);
}

TEST_F(GameDetailsExport, MendsNoLaterColon) {
  desktop_.Executable(Path("Foo_ Bar_ Baz\\foo.exe"));
  EXPECT_EQ(Details(Path("Foo: Bar: Baz\\foo.exe")), "{}");
}

TEST_F(GameDetailsExport, MissingFilesAreAnEmptyObject) {
  desktop_.Folder(kFolder);
  for (const std::string& path :
       {Path("missing.exe"), std::string("missing.exe"), Path("Foo: Bar\\foo.exe"), std::string("::"),
        std::string(), std::string(5000, 'x'), std::string("C:\\\xFF.exe")}) {
    EXPECT_EQ(Details(path), "{}") << path;
  }
}

TEST_F(GameDetailsExport, NullPathIsAnEmptyObject) {
  const GuardedBuffer buffer(3);
  EXPECT_EQ(library_.IA_GetGameDetailsByPathJson(nullptr, buffer.Data(), buffer.Size()), 2);
  EXPECT_EQ(buffer.Text(), "{}");
}

TEST_F(GameDetailsExport, NormalisesThePathButNotTheFileName) {
  desktop_.Executable(Path("foo.exe"));
  const auto json = Parsed("C:/TarnwickTest//Details/foo.exe");
  EXPECT_EQ(json.at("exepath"), Path("foo.exe"));
}

TEST_F(GameDetailsExport, TakesNamesOfAllKinds) {
  for (const std::string name : {"Тетрис", "俄罗斯方块", "Pokémon Café", "\xF0\x9F\x8E\xAE", "a'b&c"}) {
    desktop_.Executable(Path(name + "\\" + name + ".exe"),
                        Named({{"FileDescription", name + " \"quoted\"\\\n"}}));
    const auto json = Parsed(Path(name + "\\" + name + ".exe"));
    EXPECT_EQ(json.at("name"), name + " \"quoted\"\\\n");
    EXPECT_EQ(json.at("exe"), name + ".exe");
    EXPECT_EQ(json.at("exepath"), Path(name + "\\" + name + ".exe"));
  }
}

TEST_F(GameDetailsExport, AnswersForAFileThatIsNoExecutable) {
  desktop_.File(Path("notes.v2.txt"), "text");
  const auto json = Parsed(Path("notes.v2.txt"));
  EXPECT_EQ(json.at("name"), "notes.v2");
  EXPECT_EQ(json.at("exe"), "notes.v2.txt");
  const std::string icon = json.at("ico");
  if (!icon.empty()) {
    EXPECT_GT(DecodePngDataUri(icon).width, 0u);
  }
}

TEST_F(GameDetailsExport, ExecutableWithoutIconHasAGenericOneOrNone) {
  desktop_.Executable(Path("plain.exe"));
  const std::string icon = Parsed(Path("plain.exe")).at("ico");
  if (!icon.empty()) {
    EXPECT_GT(DecodePngDataUri(icon).width, 0u);
  }
}

TEST_F(GameDetailsExport, CutsTheTextToEverySize) {
  desktop_.Executable(Path("foo.exe"), Named({{"FileDescription", "Foo"}}));
  const std::string text = Details(Path("foo.exe"));
  const int whole = static_cast<int>(text.size());
  for (int size = 0; size <= whole + 2; size = size == 60 ? whole - 60 : size + 1) {
    const GuardedBuffer buffer(size);
    EXPECT_EQ(library_.IA_GetGameDetailsByPathJson(Path("foo.exe").c_str(), buffer.Data(), size), whole);
    if (size > 0) {
      EXPECT_EQ(buffer.Text(), text.substr(0, static_cast<size_t>(size) - 1)) << size;
    }
  }
}

TEST_F(GameDetailsExport, WritesNothingWithoutABuffer) {
  desktop_.Executable(Path("foo.exe"));
  const GuardedBuffer buffer(8);
  const int whole = static_cast<int>(Details(Path("foo.exe")).size());
  EXPECT_EQ(library_.IA_GetGameDetailsByPathJson(Path("foo.exe").c_str(), nullptr, 8), whole);
  EXPECT_EQ(library_.IA_GetGameDetailsByPathJson(Path("foo.exe").c_str(), buffer.Data(), 0), whole);
  EXPECT_EQ(library_.IA_GetGameDetailsByPathJson(Path("foo.exe").c_str(), buffer.Data(), -1), whole);
  EXPECT_EQ(library_.IA_GetGameDetailsByPathJson(nullptr, nullptr, 8), 2);
  EXPECT_EQ(library_.IA_GetGameDetailsByPathJson(nullptr, buffer.Data(), 0), 2);
  EXPECT_TRUE(buffer.Untouched());
}

TEST_F(GameDetailsExport, EmptyObjectNeverOverrunsTinyBuffers) {
  for (int size = 1; size <= 4; ++size) {
    const GuardedBuffer buffer(size);
    EXPECT_EQ(library_.IA_GetGameDetailsByPathJson("", buffer.Data(), size), 2);
    EXPECT_EQ(buffer.Text(), size > 2 ? "{}" : "") << size;
  }
}

TEST_F(GameDetailsExport, LeavesNoTraceInTheLog) {
  desktop_.Executable(Path("foo.exe"), Named({{"FileDescription", "Foo"}}));
  const DebugCapture capture;
  Details(Path("foo.exe"));
  Details(Path("missing.exe"));
  EXPECT_THAT(capture.Raw(), testing::IsEmpty());
}

TEST_F(GameDetailsExport, LeavesTheThreadsComAsItWas) {
  desktop_.Executable(Path("foo.exe"));
  std::thread([&] {
    Details(Path("foo.exe"));
    Details("");
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
    EXPECT_NE(Details(Path("foo.exe")), "{}");
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_FALSE);
    CoUninitialize();
    CoUninitialize();
  }).join();
}

TEST_F(GameDetailsExport, RunsOnManyThreadsAtOnce) {
  desktop_.Executable(Path("foo.exe"), Named({{"FileDescription", "Foo"}}));
  const std::string expected = Details(Path("foo.exe"));
  std::vector<std::string> answers(8);
  {
    std::vector<std::jthread> threads;
    for (std::string& answer : answers) threads.emplace_back([&] { answer = Details(Path("foo.exe")); });
  }
  EXPECT_THAT(answers, testing::Each(expected));
}

}  // namespace
}  // namespace tarnwick::tests
