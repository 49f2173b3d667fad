// What is private is found by its place, and replaced everywhere by something of its length.
#include "host/capture/private_things.h"

#include "common/wide_text.h"
#include "host/capture/stand_ins.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using namespace host;
using testing::HasSubstr;
using testing::Not;

std::string Utf16(const std::string& text) {
  const std::wstring wide = common::Wide(text);
  return {reinterpret_cast<const char*>(wide.data()), wide.size() * sizeof(wchar_t)};
}

// `text` with everything replaced that it, and `names` of users, make private.
std::string Replaced(std::string text, const std::vector<std::string>& names = {}) {
  PrivateThings things;
  for (const std::string& name : names) AddPrivate(things, name, PrivateKind::kUser);
  FindPrivateInBytes(things, text);
  GiveOutStandIns(things, names.empty() ? "" : names.front());
  ReplacePrivateInBytes(things, text);
  return text;
}

TEST(HostCapturePrivate, KeepsTheLengthAndTheLettersOfAName) {
  EXPECT_EQ(StandIn(U"fiver", U"user", 1), U"user1");
  EXPECT_EQ(StandIn(U"margarete", U"user", 12), U"user00012");
  EXPECT_EQ(StandIn(U"bo", U"user", 3), U"u3");
  EXPECT_EQ(StandIn(U"12345678", U"account", 2), U"10000002");
  EXPECT_EQ(StandIn(U"0123456789abcdef", U"account", 2), U"0000000000000002");
  EXPECT_EQ(StandIn(U"\u0437\u043e\u044f", U"user", 1), U"\u043f\u043e\u0431");
  EXPECT_EQ(StandIn(U"\u5f20\u4f1f", U"user", 1), U"\u7528\u4e59");
}

TEST(HostCapturePrivate, FindsAProfileByItsPath) {
  EXPECT_EQ(Replaced(R"(D:\Users\Fiver\x and FIVER or fiver's, not fivers)"),
            R"(D:\Users\User1\x and USER1 or user1's, not fivers)");
  EXPECT_EQ(Replaced(R"("C:\\Users\\fiver\\x" c:/users/fiver/y)"),
            R"("C:\\Users\\user1\\x" c:/users/user1/y)");
}

TEST(HostCapturePrivate, LeavesFoldersThatAreNobodys) {
  for (const std::string text :
       {R"(C:\Users\Public\Games)", R"(C:\Users\Default\x)", R"(C:\Users\%username%\x)"})
    EXPECT_EQ(Replaced(text), text);
}

TEST(HostCapturePrivate, ReplacesAnOrdinaryWordOnlyWhereItIsAName) {
  EXPECT_EQ(Replaced(R"(C:\Users\Games\Games\x)"), R"(C:\Users\User1\Games\x)");
}

TEST(HostCapturePrivate, FindsANameInEveryForm) {
  const std::string name = "Zo\u00eb Kowalski";
  const std::string texts[] = {
      name,        "ZO\u00cb KOWALSKI",    "Zo\\u00eb Kowalski", "Zo%C3%AB%20Kowalski",
      Utf16(name), "x" + Utf16(name) + "y"};
  for (const std::string& text : texts) {
    const std::string replaced = Replaced(text, {name});
    EXPECT_EQ(replaced.size(), text.size());
    EXPECT_NE(replaced, text);
    for (const std::string part : {"Kowalski", "KOWALSKI", "%C3%AB", "\\u00eb"})
      EXPECT_THAT(replaced, Not(HasSubstr(part)));
    EXPECT_THAT(replaced, Not(HasSubstr(Utf16("Kowalski"))));
  }
}

TEST(HostCapturePrivate, FindsACyrillicNameInEveryForm) {
  const std::string name = "\u0417\u043e\u044f";
  EXPECT_EQ(Replaced(name, {name}), "\u041f\u043e\u0431");
  EXPECT_EQ(Replaced("\u0437\u043e\u044f", {name}), "\u043f\u043e\u0431");
  EXPECT_EQ(Replaced("\\u0417\\u043e\\u044f", {name}), "\\u041f\\u043e\\u0431");
  EXPECT_EQ(Replaced(Utf16(name), {name}), Utf16("\u041f\u043e\u0431"));
}

TEST(HostCapturePrivate, FindsTheAnsiFormOfAName) {
  EXPECT_EQ(Replaced("[Zo\xEB Kowalski]", {"Zo\u00eb Kowalski"}), "[Us\xE9 Er000001]");
}

TEST(HostCapturePrivate, FindsSidsMailAddressesAndSteamIds) {
  EXPECT_EQ(Replaced("S-1-5-21-111-222-333-1001 S-1-5-18"), "S-1-5-21-100-000-000-0001 S-1-5-18");
  EXPECT_EQ(Replaced("<zoe.k@mail.example.org> logo@2x.png"), "<mai.l@0000.0000000.001> logo@2x.png");
  EXPECT_EQ(Replaced("\"76561198012345678\" 176561198012345678"), "\"76561191000000001\" 176561198012345678");
  EXPECT_EQ(Replaced("C:\\Steam\\userdata\\22202001\\x 22202001 userdata\\0\\"),
            "C:\\Steam\\userdata\\10000001\\x 10000001 userdata\\0\\");
}

TEST(HostCapturePrivate, FindsNamedAccountsInTheFilesOfLaunchers) {
  EXPECT_EQ(Replaced("\"AccountName\"\t\t\"pennyw\"\n\"Other\" \"pennyw\""),
            "\"AccountName\"\t\t\"accou1\"\n\"Other\" \"accou1\"");
  EXPECT_EQ(Replaced(R"({"accountId": 99887766, "user_id":"a-b-c"} 99887766)"),
            R"({"accountId": 10000001, "user_id":"a-c-1"} 10000001)");
  EXPECT_EQ(Replaced("puuid: 0011223344556677\nname: x"), "puuid: 0000000000000001\nname: x");
  EXPECT_EQ(Replaced(std::string("\1AccountName\0pennyw\0x", 21)),
            std::string("\1AccountName\0accou1\0x", 21));
  EXPECT_EQ(Replaced("\"AccountName\" \"common\" steamapps/common"),
            "\"AccountName\" \"accou1\" steamapps/common");
}

TEST(HostCapturePrivate, GivesOneOriginalOneStandInAndTwoOriginalsTwo) {
  const std::string replaced = Replaced(R"("C:\Users\hazel" "C:\Users\fiver" "C:\Users\HAZEL")");
  EXPECT_EQ(replaced, R"("C:\Users\user2" "C:\Users\user1" "C:\Users\USER2")");
}

TEST(HostCapturePrivate, TakesNoOriginalForAStandIn) {
  EXPECT_EQ(Replaced(R"("C:\Users\user1" "C:\Users\user2")"), R"("C:\Users\user3" "C:\Users\user4")");
}

TEST(HostCapturePrivate, ReplacesANumberThatIsAnAccount) {
  PrivateThings things;
  FindPrivate(things, R"(C:\Steam\userdata\22202001)");
  GiveOutStandIns(things, "");
  EXPECT_EQ(ReplacedNumber(things, 22202001), 10000001u);
  EXPECT_EQ(ReplacedNumber(things, 7), 7u);
}

}  // namespace
}  // namespace tarnwick
