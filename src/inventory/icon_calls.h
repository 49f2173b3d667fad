#pragma once
// The calls that icons come from, as data, so that a test can count them and let each of them fail.

#include "foundation/machine/observer.h"
#include "foundation/owner.h"

#include <string>

namespace tarnwick {

struct IconCalls {
  // PrivateExtractIconsW for one icon of size by size pixels. An empty Icon unless the answer is exactly one
  // icon.
  Icon (*privateExtract)(const std::wstring& path, int index, int size);
  // The shell's icon of the file, from the largest system image list there is.
  Icon (*systemImageList)(const std::wstring& path);
  // ExtractIconExW for one large icon; a negative index is a resource number.
  Icon (*extractIconEx)(const std::wstring& path, int index);
  // SHGetFileInfoW with SHGFI_ICON.
  Icon (*shellIcon)(const std::wstring& path);
  // LoadImageW from a file; size 0 stands for the image's own size.
  Icon (*loadImage)(const std::wstring& path, int size);
};

// Windows itself. An observer hears each call as a question of kind kIcon: the path, and the call's name with
// its size and index.
extern const IconCalls kWindowsIconCalls;

// The Answer to a question for an icon: whether there is one.
Answer TellIcon(const Icon& icon);

// As in icons.h, over the calls given.
Icon LoadIconFromFile(const std::wstring& path, int index, const IconCalls& calls);
Icon LoadIcoFile(const std::wstring& path, const IconCalls& calls);

}  // namespace tarnwick
