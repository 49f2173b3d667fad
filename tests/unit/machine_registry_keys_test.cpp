#include "foundation/machine/registry_keys.h"

#include "desktop/desktop.h"
#include "foundation/registry_value_reader.h"
#include "foundation/windows_api.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using desktop::Desktop;
using desktop::View;
using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::string_view_literals;

const std::string kKey = R"(HKEY_LOCAL_MACHINE\SOFTWARE\TarnwickTest\Keys)";
const std::wstring kSubkey = LR"(SOFTWARE\TarnwickTest\Keys)";
const std::string kNarrowSubkey = R"(SOFTWARE\TarnwickTest\Keys)";

RegistryKey Opened(RegistryView view = RegistryView::k64) {
  return OpenKey(RegistryRoot::kLocalMachine, kSubkey, view);
}

TEST(RegistryKeys, OpenInTheViewThatIsAskedFor) {
  Desktop d;
  d.Key(kKey + "\\Only32", View::k32);
  const auto opens = [](RegistryView view) {
    return static_cast<bool>(OpenKey(RegistryRoot::kLocalMachine, kSubkey + L"\\Only32", view));
  };
  EXPECT_TRUE(opens(RegistryView::k32));
  EXPECT_FALSE(opens(RegistryView::k64));
  EXPECT_EQ(opens(RegistryView::kNative), sizeof(void*) == 4);
}

TEST(RegistryKeys, SayWhyTheyAreNotOpen) {
  const RegistryKey key = OpenKey(RegistryRoot::kCurrentUser, kSubkey + L"\\Missing", RegistryView::kNative);
  EXPECT_FALSE(key);
  EXPECT_EQ(key.error, ERROR_FILE_NOT_FOUND);
}

TEST(RegistryKeys, AnEmptySubkeyIsTheRoot) {
  for (const RegistryRoot root : {RegistryRoot::kLocalMachine, RegistryRoot::kCurrentUser,
                                  RegistryRoot::kUsers, RegistryRoot::kClassesRoot}) {
    EXPECT_TRUE(OpenKey(root, L"", RegistryView::kNative)) << NameOf(root);
  }
}

TEST(RegistryKeys, OneThatIsNotOpenHoldsNothing) {
  const RegistryKey none;
  EXPECT_FALSE(OpenSubkey(none, L"x"));
  EXPECT_EQ(ReadTextValue(none, L"x").has_value() || ReadNumberValue(none, L"x").has_value() ||
                ReadNarrowValue(none, "x", 100).has_value(),
            false);
  EXPECT_THAT(ListSubkeys(none).names, IsEmpty());
  EXPECT_THAT(ListNarrowSubkeys(none), IsEmpty());
  EXPECT_THAT(ListValues(none), IsEmpty());
}

TEST(RegistryKeys, ListTheirSubkeysAndWhatEndsTheList) {
  Desktop d;
  d.Key(kKey + "\\A", View::k64);
  d.Key(kKey + "\\B", View::k64);
  const RegistryKey key = Opened();
  const SubkeyList list = ListSubkeys(key);
  EXPECT_THAT(list.names, ElementsAre(L"A", L"B"));
  EXPECT_EQ(list.error, kNoMoreItems);
  EXPECT_TRUE(OpenSubkey(key, L"B"));
  EXPECT_FALSE(OpenSubkey(key, L"C"));
  EXPECT_THAT(ListNarrowSubkeys(OpenNarrowKey(RegistryRoot::kLocalMachine, kNarrowSubkey, RegistryView::k64)),
              ElementsAre("A", "B"));
}

TEST(RegistryKeys, ReadTextsUpToALimitAndOfTheirTypesAlone) {
  Desktop d;
  d.RawValue(kKey, "Text", REG_SZ, "a\0b\0c"sv, View::k64);
  d.Dword(kKey, "Number", 7, View::k64);
  const RegistryKey key = Opened();
  const std::optional<RegistryValue> text = ReadTextValue(key, L"Text");
  ASSERT_TRUE(text);
  EXPECT_EQ(text->type, kRegistryText);
  EXPECT_THAT(text->bytes, ElementsAre('a', 0, 'b', 0, 'c'));
  EXPECT_TRUE(ReadTextValue(key, L"Text", 5));
  EXPECT_FALSE(ReadTextValue(key, L"Text", 4));
  EXPECT_FALSE(ReadTextValue(key, L"Number"));
  EXPECT_FALSE(ReadTextValue(key, L"Missing"));
}

TEST(RegistryKeys, ReadNumbersOfUpToFourBytes) {
  Desktop d;
  d.Dword(kKey, "Number", 0xFEDCBA98, View::k64);
  d.Binary(kKey, "Two", "\x34\x12"sv, View::k64);
  d.Qword(kKey, "Eight", 1, View::k64);
  const RegistryKey key = Opened();
  EXPECT_EQ(ReadNumberValue(key, L"Number").value().number, 0xFEDCBA98u);
  EXPECT_EQ(ReadNumberValue(key, L"Number").value().type, kRegistryNumber);
  EXPECT_EQ(ReadNumberValue(key, L"Two").value().number, 0x1234u);
  EXPECT_FALSE(ReadNumberValue(key, L"Eight"));
}

TEST(RegistryKeys, NarrowValuesNeedTheirRoom) {
  Desktop d;
  d.String(kKey, "Text", "abc", View::k64);
  const RegistryKey key = OpenNarrowKey(RegistryRoot::kLocalMachine, kNarrowSubkey, RegistryView::k64);
  const std::optional<RegistryValue> value = ReadNarrowValue(key, "Text", 4);
  ASSERT_TRUE(value);
  EXPECT_THAT(value->bytes, ElementsAre('a', 'b', 'c', 0));
  EXPECT_FALSE(ReadNarrowValue(key, "Text", 3));
}

}  // namespace
}  // namespace tarnwick
