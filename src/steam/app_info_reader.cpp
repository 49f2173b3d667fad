// Reader: the app cache.
#include "steam/app_info_reader.h"

#include "foundation/log.h"

#include <algorithm>
#include <memory>
#include <utility>

#if defined(_MSC_VER)
#define TARNWICK_NOINLINE __declspec(noinline)
#else
#define TARNWICK_NOINLINE __attribute__((noinline))
#endif

namespace tarnwick {
namespace {

constexpr uint32_t kFirstVersionWithLongHeader = 40;
constexpr uint32_t kFirstVersionWithStringTable = 41;
constexpr uint32_t kShortHeader = 40;
constexpr uint32_t kLongHeader = 60;

enum EntryType : unsigned char {
  kSection = 0,
  kText = 1,
  kInt32 = 2,
  kFloat = 3,
  kUint64 = 7,
  kSectionEnd = 8,
  kInt64 = 10,
  kLastKnown = 10,
};

// Little-endian. False, and the number stays as it is, if the stream has fewer bytes.
template <class Number>
bool ReadNumber(std::istream& stream, Number& number) {
  char bytes[sizeof(Number)];
  if (!stream.read(bytes, sizeof(bytes))) return false;
  uint64_t value = 0;
  for (size_t i = sizeof(bytes); i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes[i]);
  number = static_cast<Number>(value);
  return true;
}

// The bytes up to a NUL. A text that the end of the stream cuts short is kept as far as it came; it sets the
// stream's fail state, as a missing text does.
void ReadTableText(std::istream& stream, std::string& text) {
  std::getline(stream, text, '\0');
  if (stream.eof()) stream.setstate(std::ios::failbit);
}

// The room for all entries is asked for first, so that a count beyond memory fails at once. Texts that are
// missing are not stored, and their room is given back: the stream stays in its fail state then, so no app
// can be read and no key name is looked up (docs/decisions/appinfo-string-count.md).
void ReadStringTable(SteamAppInfoReader& reader, std::istream& stream) {
  uint32_t count = 0;
  ReadNumber(stream, count);
  reader.stringTable.clear();
  reader.stringTable.reserve(count);
  for (uint32_t i = 0; i < count && stream.good(); ++i)
    ReadTableText(stream, reader.stringTable.emplace_back());
  if (reader.stringTable.size() < count) reader.stringTable.shrink_to_fit();
  LogStream() << "[SteamAppInfo] Loaded String Table with " << count << " entries.\n";
}

void ReadHeader(SteamAppInfoReader& reader, std::istream& stream) {
  uint32_t word = 0;
  uint32_t ignored = 0;
  ReadNumber(stream, word);
  ReadNumber(stream, ignored);
  reader.version = word & 0xFF;
  LogStream() << "[SteamAppInfo] Header Magic: 0x" << std::hex << (word >> 8) << ", Version: " << std::dec
              << reader.version << "\n";
  if (reader.version < kFirstVersionWithStringTable) return;
  int64_t tableOffset = 0;
  ReadNumber(stream, tableOffset);
  const std::istream::pos_type records = stream.tellg();
  stream.seekg(static_cast<std::streamoff>(tableOffset), std::ios::beg);
  ReadStringTable(reader, stream);
  stream.seekg(records);
}

// One record. False at the end of the list, or of the file.
bool IndexRecord(SteamAppInfoReader& reader, std::istream& stream, uint32_t headerSize) {
  uint32_t appId = 0;
  uint32_t size = 0;
  if (!ReadNumber(stream, appId) || appId == 0) return false;
  if (!ReadNumber(stream, size)) return false;
  const auto place = static_cast<uint64_t>(static_cast<std::streamoff>(stream.tellg()));
  if (size > headerSize) reader.index[appId] = {place + headerSize, size - headerSize};
  stream.seekg(static_cast<std::streamoff>(size), std::ios::cur);
  return stream.good();
}

// Touches the stack some way below the caller. The overflow that endless nesting leads to then happens here,
// and not inside an allocation: there it would leave the heap locked, and with it every other thread of the
// host.
TARNWICK_NOINLINE void TouchStackAhead() {
  [[maybe_unused]] volatile char room[32 * 1024];
  room[0] = 0;
}

std::string_view TakeText(ByteCursor& cursor) {
  const std::string_view rest(cursor.data + cursor.position,
                              static_cast<size_t>(cursor.size - cursor.position));
  const size_t length = std::min(rest.find('\0'), rest.size());
  cursor.position += std::min(length + 1, rest.size());
  return rest.substr(0, length);
}

unsigned char TakeByte(ByteCursor& cursor) {
  return static_cast<unsigned char>(cursor.data[cursor.position++]);
}

bool HasLeft(const ByteCursor& cursor, uint64_t bytes) { return cursor.size - cursor.position >= bytes; }

void SkipIfThere(ByteCursor& cursor, uint64_t bytes) {
  if (HasLeft(cursor, bytes)) cursor.position += bytes;
}

void SkipPayload(ByteCursor& cursor, unsigned char type) {
  switch (type) {
    case kInt32:
      return SkipIfThere(cursor, 4);
    case kFloat:
      // Kept: unlike the others, this type goes to the end of a buffer that is too short for it
      // (docs/decisions/steam-binary-files.md).
      cursor.position = HasLeft(cursor, 4) ? cursor.position + 4 : cursor.size;
      return;
    case kUint64:
    case kInt64:
      return SkipIfThere(cursor, 8);
    default:
      // Kept: the payloads of 4, 5, 6 and 9 are unknown, so nothing is skipped
      // (docs/decisions/steam-binary-files.md).
      return;
  }
}

bool HoldsExe(std::string_view text) { return text.find(".exe") != std::string_view::npos; }

// The first launch entry counts, until a later one is an .exe where it was none.
void TakeExecutable(AppInfoDetails& details, std::string&& value) {
  if (details.executable.empty() || (HoldsExe(value) && !HoldsExe(details.executable))) {
    details.executable = std::move(value);
  }
}

// Sections count by name alone, wherever they stand. One named common or config is never a launch entry too.
void TakeField(AppInfoDetails& details, std::string_view sectionName, std::string_view parentName,
               std::string_view key, std::string&& value) {
  if (sectionName == "common") {
    if (key == "type")
      details.type = std::move(value);
    else if (key == "name")
      details.name = std::move(value);
  } else if (sectionName == "config") {
    if (key == "installdir") details.installDir = std::move(value);
  } else if (parentName == "launch" && key == "executable") {
    TakeExecutable(details, std::move(value));
  }
}

void WalkApp(KeyValueContext& context) {
  if (context.cursor.size == 0) {
    LogStream() << "  [Debug] Reader EOF at start.\n";
    return;
  }
  const unsigned char type = TakeByte(context.cursor);
  if (type != kSection) {
    LogStream() << "  [Debug] Unexpected Root Type: " << static_cast<unsigned>(type) << "\n";
    return;
  }
  std::string number;
  const std::string_view rootName = ReadKeyName(context, number);
  ParseKeyValueSection(context, 0, rootName, "");
}

}  // namespace

void IndexAppInfo(SteamAppInfoReader& reader, std::istream& stream) {
  reader.index.clear();
  ReadHeader(reader, stream);
  LogStream() << "[SteamAppInfo] Indexing appinfo.vdf...\n";
  const uint32_t headerSize = reader.version < kFirstVersionWithLongHeader ? kShortHeader : kLongHeader;
  if (stream.good()) {
    while (IndexRecord(reader, stream, headerSize)) {
    }
  }
  LogStream() << "[SteamAppInfo] Indexed " << reader.index.size() << " apps.\n";
}

bool ReadAppDetails(SteamAppInfoReader& reader, uint32_t appId, AppInfoDetails& details) {
  return reader.stream && ReadAppDetails(reader, *reader.stream, appId, details);
}

bool ReadAppDetails(const SteamAppInfoReader& reader, std::istream& stream, uint32_t appId,
                    AppInfoDetails& details) {
  const auto found = reader.index.find(appId);
  if (found == reader.index.end()) return false;
  const AppInfoIndexEntry& entry = found->second;
  stream.seekg(static_cast<std::streamoff>(entry.offset), std::ios::beg);
  if (!stream.good()) return false;
  try {
    // Not cleared: a length that the file doesn't have costs an address range, and no pages.
    const auto bytes = std::make_unique_for_overwrite<char[]>(entry.length);
    if (!stream.read(bytes.get(), entry.length)) return false;
    details.appId = appId;
    ByteCursor cursor{bytes.get(), entry.length, 0};
    KeyValueContext context{cursor, details, reader.stringTable};
    WalkApp(context);
    return true;
  } catch (...) {
    return false;
  }
}

std::string ReadInlineString(ByteCursor& cursor) { return std::string(TakeText(cursor)); }

std::string_view ReadKeyName(KeyValueContext& context, std::string& number) {
  ByteCursor& cursor = context.cursor;
  if (context.stringTable.empty()) return TakeText(cursor);
  uint32_t i = 0;
  // Kept: with fewer bytes left the first entry is meant, and the bytes stay to be read as what follows
  // (docs/decisions/steam-binary-files.md).
  if (HasLeft(cursor, 4)) {
    for (uint32_t shift = 0; shift < 32; shift += 8) i |= uint32_t{TakeByte(cursor)} << shift;
  }
  if (i < context.stringTable.size()) return context.stringTable[i];
  number = std::to_string(i);
  return number;
}

void ParseKeyValueSection(KeyValueContext& context, uint32_t depth, std::string_view sectionName,
                          std::string_view parentName) {
  TouchStackAhead();
  std::string number;
  while (context.cursor.position < context.cursor.size) {
    const unsigned char type = TakeByte(context.cursor);
    if (type == kSectionEnd) return;
    const std::string_view key = ReadKeyName(context, number);
    if (type > kLastKnown) continue;
    if (type == kSection) {
      ParseKeyValueSection(context, depth + 1, key, sectionName);
    } else if (type == kText) {
      TakeField(context.details, sectionName, parentName, key, ReadInlineString(context.cursor));
    } else {
      SkipPayload(context.cursor, type);
    }
  }
}

}  // namespace tarnwick
