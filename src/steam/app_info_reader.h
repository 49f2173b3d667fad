#pragma once
// Steam's binary cache of what it knows about each app, appcache\appinfo.vdf: an index of the whole file
// first, then the key-values of one app at a time. The reader takes every version, doesn't check the magic
// number, and follows a length or count in the file only as far as there are bytes.
//
// A reader belongs to one thread: the place in the file is part of its state. It is built empty, indexed once
// (see app_info_file.h for opening), and asked for any number of apps. It can't be copied, since it owns the
// open file.

#include <cstdint>
#include <istream>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct AppInfoIndexEntry {
  uint64_t offset = 0;  // of the first byte of the key-values, from the start of the file
  uint32_t length = 0;  // of the key-values, in bytes
};

struct AppInfoDetails {
  uint32_t appId = 0;
  std::string name;
  std::string installDir;
  std::string executable;
  std::string type;
};

struct SteamAppInfoReader {
  std::string filePath;
  std::map<uint32_t, AppInfoIndexEntry> index;  // of two records with one id, the later
  std::vector<std::string> stringTable;         // key names; empty below version 41
  uint32_t version = 0;
  std::unique_ptr<std::istream> stream;  // null until the file is open; lives as long as the reader
};

// A place in the bytes of one app.
struct ByteCursor {
  const char* data = nullptr;
  uint64_t size = 0;
  uint64_t position = 0;
};

// What the walk over one app's key-values carries.
struct KeyValueContext {
  ByteCursor& cursor;
  AppInfoDetails& details;
  const std::vector<std::string>& stringTable;
};

// Reads header, string table and index from the start of `stream`. Logs four lines (three below version 41).
// A file cut short gives an index of what was found, and leaves the stream failed, so that no app can be read
// from it. Throws std::bad_alloc for a string table that memory has no room for; the index is then empty.
void IndexAppInfo(SteamAppInfoReader& reader, std::istream& stream);

// Reads one app. True if its bytes were read, whatever the walk found in them; texts that they don't hold
// stay empty. False if the app isn't in the index, if its bytes are not all there (which spoils the stream
// for all later calls), or if memory ran out. Nesting is limited by the stack alone: a file may overflow it,
// and the caller's guard against structured exceptions has to hold that.
bool ReadAppDetails(SteamAppInfoReader& reader, uint32_t appId, AppInfoDetails& details);

// As above, from a stream other than the reader's own.
bool ReadAppDetails(const SteamAppInfoReader& reader, std::istream& stream, uint32_t appId,
                    AppInfoDetails& details);

// The bytes up to a NUL byte, which is stepped over, or to the end of the buffer.
std::string ReadInlineString(ByteCursor& cursor);

// The next key name: an entry of the string table, a table index beyond its end in decimal, or, without a
// table, an inline text. The view lives as long as the buffer and the table, or as `number`, which takes a
// decimal text.
std::string_view ReadKeyName(KeyValueContext& context, std::string& number);

// Walks one section up to its end marker or the end of the buffer, and everything nested in it. `depth` is
// counted and limits nothing.
void ParseKeyValueSection(KeyValueContext& context, uint32_t depth, std::string_view sectionName,
                          std::string_view parentName);

}  // namespace tarnwick
