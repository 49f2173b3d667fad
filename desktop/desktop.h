#pragma once
// Builds a desktop: registry keys, files, folders and executables, as launchers and installers leave them.
// Tests and the demo share it. What a Desktop made, and nothing else, goes when it is destroyed: a value or
// file that stood there before gets its old content back.
//
// All texts are UTF-8; paths are absolute, with backslashes; keys begin with a hive's long name, such as
// HKEY_LOCAL_MACHINE\SOFTWARE\Foo. Every function throws std::runtime_error with the path or key in its text
// when something can't be made. Constructing a Desktop throws unless TARNWICK_THROWAWAY_MACHINE is 1.

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::desktop {

enum class View { kNative, k32, k64 };

// One icon image of an executable or .ico file: a square of one colour, or any picture.
struct IconImage {
  int size = 32;            // pixels, both ways; 256 is stored as PNG, smaller ones as bitmaps
  uint32_t rgb = 0x3366CC;  // 0xRRGGBB
  std::string png = {};     // if there is one, the picture as it is, of `size` pixels both ways
};

// One icon resource: the images it offers.
struct IconGroup {
  std::vector<IconImage> images = {};
};

// One string table of a version resource.
struct VersionStrings {
  uint16_t language = 0x0409;
  uint16_t codePage = 1200;
  std::map<std::string, std::string> values = {};  // such as {"FileDescription", "..."}
};

struct ExecutableOptions {
  std::vector<IconGroup> icons = {};
  std::vector<VersionStrings> versions = {};  // empty: no version resource
  uint64_t size = 0;                          // padded with zeros up to this many bytes
};

struct MadeThing;  // one step of making (journal.h)

class Desktop {
 public:
  Desktop();
  ~Desktop();
  Desktop(Desktop&&) noexcept;
  Desktop& operator=(Desktop&&) noexcept;

  void Keep();  // what was made stays when this is destroyed

  // Takes everything away now, in the reverse order of making. A folder or key that holds something else by
  // then stays. Goes on after a failure, and throws the first one at the end.
  void Remove();

  // What was made so far, in order; and the way to take it over, in this process or another (journal.h).
  const std::vector<MadeThing>& Made() const;
  explicit Desktop(std::vector<MadeThing> made);

  // Files. Missing parent folders are made, and belong to this desktop.
  void Folder(const std::string& path);
  void File(const std::string& path, std::string_view bytes = "tarnwick");
  void SparseFile(const std::string& path, uint64_t size);  // zeros that take no room on the disk
  void PaddedFile(const std::string& path, std::string_view bytes, uint64_t size);  // zeros behind the bytes
  void ModifiedTime(const std::string& path, int64_t unixSeconds);

  // A folder that leads to another. Under Wine, which knows no junctions, a symbolic link of the system
  // below: it has the attribute of a reparse point too. Removing it leaves the target alone.
  void Junction(const std::string& path, const std::string& target);

  // A folder that is there already can't be listed from now on: a process holds it until this desktop goes.
  void HoldFolder(const std::string& path);

  // Real 64-bit PE files (they run and end with code 0), and .ico files.
  void Executable(const std::string& path, const ExecutableOptions& options = {});
  void IconFile(const std::string& path, const IconGroup& icon);

  // Registry. The view matters below HKEY_LOCAL_MACHINE\SOFTWARE only.
  void Key(const std::string& key, View view = View::kNative);
  void String(const std::string& key, const std::string& name, const std::string& text,
              View view = View::kNative);
  void ExpandString(const std::string& key, const std::string& name, const std::string& text,
                    View view = View::kNative);
  void MultiString(const std::string& key, const std::string& name, const std::vector<std::string>& texts,
                   View view = View::kNative);
  void Dword(const std::string& key, const std::string& name, uint32_t value, View view = View::kNative);
  void Qword(const std::string& key, const std::string& name, uint64_t value, View view = View::kNative);
  void Binary(const std::string& key, const std::string& name, std::string_view bytes,
              View view = View::kNative);
  // Any type with any bytes: odd lengths, no terminator.
  void RawValue(const std::string& key, const std::string& name, uint32_t type, std::string_view bytes,
                View view = View::kNative);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// The bytes of an executable or an icon file, for tests that spoil them before writing.
std::string ExecutableBytes(const ExecutableOptions& options);
std::string IconFileBytes(const IconGroup& icon);

}  // namespace tarnwick::desktop
