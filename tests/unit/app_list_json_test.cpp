#include "inventory/app_list_json.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

AppRecord FullRecord() {
  AppRecord record;
  record.DisplayName = L"Foo \"Bar\"";
  record.Publisher = L"P\\Q";
  record.DisplayVersion = L"1\t2";
  record.InstallDate = L"2024\n01";
  record.EstimatedSize = -5;
  record.IconDataUri = L"data:\"as it is\"";
  return record;
}

TEST(AppendAppObject, WritesItsKeysInOrderWithoutWhiteSpace) {
  std::wstring json = L"[";
  const AppRecord record = FullRecord();
  AppendAppObject(json, {record, record.DisplayName, L"C:/Games//Foo\\foo.exe"});
  EXPECT_EQ(
      json,
      LR"([{"name":"Foo \"Bar\"","publisher":"P\\Q","version":"1\u00092","loc":"C:\\Games\\Foo\\foo.exe",)"
      LR"("date":"2024\n01","sizeKB":-5,"icon":"data:"as it is""})");
}

TEST(AppendAppObject, WritesTheFileNameBehindTheLocationWhereAskedFor) {
  std::wstring json = L"[";
  const AppRecord record;
  AppendAppObject(json, {record, L"\u6e38\u620f/", L"C:\\A\\a.exe", true});
  EXPECT_EQ(json,
            L"[{\"name\":\"\u6e38\u620f/\",\"publisher\":\"\",\"version\":\"\",\"loc\":\"C:\\\\A\\\\a.exe\","
            L"\"exeName\":\"a.exe\",\"date\":\"\",\"sizeKB\":0,\"icon\":\"\"}");
}

TEST(AppendAppObject, PutsOneCommaBetweenObjects) {
  std::wstring json = L"[";
  const AppRecord record;
  const std::wstring empty;
  for (int i = 0; i < 3; ++i) AppendAppObject(json, {record, empty, empty});
  const std::wstring object =
      LR"({"name":"","publisher":"","version":"","loc":"","date":"","sizeKB":0,"icon":""})";
  EXPECT_EQ(json, L"[" + object + L"," + object + L"," + object);
}

}  // namespace
}  // namespace tarnwick
