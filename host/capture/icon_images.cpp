// Edge: icon resources.
#include "host/capture/icon_images.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <string_view>

#include "foundation/owner.h"
#include "foundation/seh_guard.h"
#include "inventory/png.h"

namespace tarnwick::host {
namespace {

constexpr DWORD kIconVersion = 0x00030000;
constexpr size_t kHeaderBytes = 6;

struct ModuleTraits {
  using Value = HMODULE;
  static Value None() { return nullptr; }
  static void Close(Value module) { FreeLibrary(module); }
};
using Module = Owner<ModuleTraits>;

// One row of an icon's directory.
struct Row {
  int size = 0;
  int bits = 0;
  std::string_view image;
};

uint32_t Number(std::string_view bytes, size_t at, size_t count) {
  uint32_t number = 0;
  if (at + count <= bytes.size()) std::memcpy(&number, bytes.data() + at, count);
  return number;
}

// `image` finds the bytes of a row of `rowBytes`.
template <class Image>
std::vector<Row> RowsOf(std::string_view directory, size_t rowBytes, Image&& image) {
  std::vector<Row> rows;
  for (uint32_t i = 0; i < Number(directory, 4, 2); ++i) {
    const std::string_view row = directory.substr(std::min(directory.size(), kHeaderBytes + i * rowBytes));
    if (row.size() < rowBytes) break;
    const auto width = static_cast<int>(Number(row, 0, 1));
    rows.push_back({width == 0 ? 256 : width, static_cast<int>(Number(row, 6, 2)), image(row)});
  }
  return rows;
}

std::string PngOf(const Row& row) {
  std::string copy(row.image);
  std::vector<unsigned char> png;
  RunGuarded([&] {
    const Icon icon(CreateIconFromResourceEx(reinterpret_cast<BYTE*>(copy.data()),
                                             static_cast<DWORD>(copy.size()), TRUE, kIconVersion, row.size,
                                             row.size, LR_DEFAULTCOLOR));
    EncodeIconToPng(icon.Get(), png);
  });
  return {png.begin(), png.end()};
}

// Of the rows of one size the one of most colours.
IconPictures PicturesOf(const std::vector<Row>& rows) {
  std::map<int, Row> best;
  for (const Row& row : rows) {
    const auto [found, fresh] = best.try_emplace(row.size, row);
    if (!fresh && row.bits > found->second.bits) found->second = row;
  }
  IconPictures pictures;
  for (const auto& [size, row] : best) {
    if (std::string png = PngOf(row); !png.empty()) pictures.push_back({size, std::move(png)});
  }
  return pictures;
}

std::string_view Resource(HMODULE module, const wchar_t* name, const wchar_t* type) {
  const HRSRC found = FindResourceW(module, name, type);
  const HGLOBAL loaded = found == nullptr ? nullptr : LoadResource(module, found);
  const void* const bytes = loaded == nullptr ? nullptr : LockResource(loaded);
  return bytes == nullptr ? std::string_view()
                          : std::string_view(static_cast<const char*>(bytes), SizeofResource(module, found));
}

IconPictures GroupPictures(HMODULE module, const wchar_t* name) {
  constexpr size_t kRowBytes = 14;
  return PicturesOf(RowsOf(Resource(module, name, RT_GROUP_ICON), kRowBytes, [&](std::string_view row) {
    return Resource(module, MAKEINTRESOURCEW(Number(row, 12, 2)), RT_ICON);
  }));
}

BOOL CALLBACK AppendGroup(HMODULE module, const wchar_t*, wchar_t* name, LONG_PTR groups) {
  auto& list = *reinterpret_cast<IconGroups*>(groups);
  if (IconPictures pictures = GroupPictures(module, name); !pictures.empty())
    list.push_back(std::move(pictures));
  return list.size() < kMostIconGroups;
}

IconGroups GroupsOf(const std::wstring& path) {
  IconGroups groups;
  const Module module(
      LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE));
  if (module)
    EnumResourceNamesW(module.Get(), RT_GROUP_ICON, AppendGroup, reinterpret_cast<LONG_PTR>(&groups));
  return groups;
}

}  // namespace

IconGroups IconsOfProgram(const std::wstring& path) {
  IconGroups groups;
  // A file that is cut short can fault where its resources should be.
  RunGuarded([&] { groups = GroupsOf(path); });
  return groups;
}

IconGroups IconsOfIconFile(const std::string& bytes) {
  constexpr size_t kRowBytes = 16;
  const std::string_view whole = bytes;
  IconPictures pictures = PicturesOf(RowsOf(whole, kRowBytes, [&](std::string_view row) {
    const size_t begin = std::min<size_t>(whole.size(), Number(row, 12, 4));
    return whole.substr(begin, Number(row, 8, 4));
  }));
  return pictures.empty() ? IconGroups() : IconGroups{std::move(pictures)};
}

}  // namespace tarnwick::host
