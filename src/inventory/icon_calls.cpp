// Edge: the icon calls of user32 and the shell.
#include "inventory/icon_calls.h"

#include "foundation/conversions.h"
#include "foundation/machine/observer.h"
#include "foundation/seh_guard.h"
#include "foundation/windows_api.h"

#include <commctrl.h>
#include <commoncontrols.h>
#include <shellapi.h>
#include <shlobj.h>

namespace tarnwick {
namespace {

using PrivateExtractIcons = UINT WINAPI(LPCWSTR, int, int, int, HICON*, UINT*, UINT, UINT);

// Looked up once for the process: the function is exported but not in every import library.
PrivateExtractIcons* PrivateExtractIconsCall() {
  static PrivateExtractIcons* const call = [] {
    const HMODULE user32 = GetModuleHandleW(L"user32.dll");
    const FARPROC address = user32 == nullptr ? nullptr : GetProcAddress(user32, "PrivateExtractIconsW");
    return reinterpret_cast<PrivateExtractIcons*>(reinterpret_cast<void*>(address));
  }();
  return call;
}

Icon PrivateExtract(const std::wstring& path, int index, int size) {
  PrivateExtractIcons* const extract = PrivateExtractIconsCall();
  if (extract == nullptr) return Icon();
  Icon icon;
  UINT resource = 0;
  const UINT count = extract(path.c_str(), index, size, size, icon.Receive(), &resource, 1, 0);
  return count == 1 ? std::move(icon) : Icon();
}

ComPointer<IImageList> LargestImageList() {
  ComPointer<IImageList> list;
  for (const int size : {SHIL_JUMBO, SHIL_EXTRALARGE}) {
    if (SUCCEEDED(SHGetImageList(size, __uuidof(IImageList), reinterpret_cast<void**>(list.Receive()))))
      return list;
    // A failed call may leave anything in the pointer; none of it is ours to release.
    list.Release();
  }
  return list;
}

Icon SystemImageList(const std::wstring& path) {
  const ComPointer<IImageList> list = LargestImageList();
  if (!list) return Icon();
  SHFILEINFOW info = {};
  if (SHGetFileInfoW(path.c_str(), 0, &info, sizeof info, SHGFI_SYSICONINDEX) == 0) return Icon();
  return Icon(ImageList_GetIcon(reinterpret_cast<HIMAGELIST>(list.Get()), info.iIcon, ILD_TRANSPARENT));
}

Icon ExtractLargeIcon(const std::wstring& path, int index) {
  Icon icon;
  ExtractIconExW(path.c_str(), index, icon.Receive(), nullptr, 1);
  return icon;
}

Icon ShellIcon(const std::wstring& path) {
  SHFILEINFOW info = {};
  if (SHGetFileInfoW(path.c_str(), 0, &info, sizeof info, SHGFI_ICON) == 0) return Icon();
  return Icon(info.hIcon);
}

Icon LoadIconImage(const std::wstring& path, int size) {
  return Icon(static_cast<HICON>(LoadImageW(nullptr, path.c_str(), IMAGE_ICON, size, size, LR_LOADFROMFILE)));
}

// The decoders of icon resources read mapped files, and some fault on a file that is cut short or has false
// sizes in it. A fault counts as no icon (docs/decisions/icon-decoder-faults.md).
template <auto call, class... Arguments>
Icon Guarded(Arguments... arguments) {
  Icon icon;
  RunGuarded([&] { icon = call(arguments...); });
  return icon;
}

// The calls as observers know them.
std::string PrivateExtractText(int index, int size) {
  return "PrivateExtractIconsW #" + std::to_string(index) + " at " + std::to_string(size) + " pixels";
}

std::string SystemImageListText() { return "SHGetImageList"; }

std::string ExtractLargeIconText(int index) { return "ExtractIconExW #" + std::to_string(index); }

std::string ShellIconText() { return "SHGetFileInfoW"; }

std::string LoadIconImageText(int size) {
  return "LoadImageW at " + (size == 0 ? "its own size" : std::to_string(size) + " pixels");
}

// The guarded call as a question to the machine.
template <auto call, auto text, class... Arguments>
Icon Asked(const std::wstring& path, Arguments... arguments) {
  return machine::AskMachine(
      [&] { return Question{QuestionKind::kIcon, WideToUtf8(path), text(arguments...), {}, {}}; },
      [] { return Icon(); }, [&] { return Guarded<call, const std::wstring&>(path, arguments...); },
      TellIcon);
}

}  // namespace

const IconCalls kWindowsIconCalls = {
    Asked<PrivateExtract, PrivateExtractText>, Asked<SystemImageList, SystemImageListText>,
    Asked<ExtractLargeIcon, ExtractLargeIconText>, Asked<ShellIcon, ShellIconText>,
    Asked<LoadIconImage, LoadIconImageText>};

Answer TellIcon(const Icon& icon) {
  const bool given = static_cast<bool>(icon);
  return {given, given ? "an icon" : "none"};
}

}  // namespace tarnwick
