// Writes a 64-bit console program byte for byte: it calls ExitProcess(0), and carries the icons and the
// version resource asked for. Written by hand, it needs no compiler and no temporary file, and is the same on
// every machine.
#include "desktop/bytes.h"
#include "desktop/desktop.h"
#include "desktop/icon_image.h"
#include "desktop/version_resource.h"

#include <algorithm>
#include <map>

namespace tarnwick::desktop {
namespace {

constexpr uint32_t kFileStep = 0x200;
constexpr uint32_t kMemoryStep = 0x1000;
constexpr uint32_t kCodeAddress = 0x1000;
constexpr uint32_t kImportAddress = 0x2000;
constexpr uint32_t kResourceAddress = 0x3000;
constexpr uint32_t kHeaderLength = 0x200;

enum ResourceType : uint32_t { kIcon = 3, kGroupIcon = 14, kVersion = 16 };

struct Resource {
  uint32_t language = 0;
  std::string bytes;
};

// By type and then by id, the order that the resource directory requires.
using Resources = std::map<uint32_t, std::map<uint32_t, Resource>>;

struct Section {
  const char* name;
  uint32_t address;
  uint32_t flags;
  std::string bytes;
};

uint32_t RoundUp(size_t number, uint32_t step) {
  return static_cast<uint32_t>((number + step - 1) / step * step);
}

void AddIconGroup(Resources& resources, const IconGroup& group) {
  std::string directory;
  Append16(directory, 0);
  Append16(directory, 1);
  Append16(directory, static_cast<unsigned>(group.images.size()));
  for (const IconImage& image : group.images) {
    const std::string bytes = IconImageBytes(image);
    const uint32_t id = static_cast<uint32_t>(resources[kIcon].size()) + 1;
    resources[kIcon][id] = {0x0409, bytes};
    directory += IconEntryBytes(image, bytes.size());
    Append16(directory, id);
  }
  const uint32_t id = static_cast<uint32_t>(resources[kGroupIcon].size()) + 1;
  resources[kGroupIcon][id] = {0x0409, directory};
}

Resources CollectResources(const ExecutableOptions& options) {
  Resources resources;
  for (const IconGroup& group : options.icons) AddIconGroup(resources, group);
  if (!options.versions.empty())
    resources[kVersion][1] = {options.versions.front().language, VersionResourceBytes(options.versions)};
  return resources;
}

void AppendDirectory(std::string& out, size_t entries) {
  for (int field = 0; field < 3; ++field) Append32(out, 0);
  Append16(out, 0);  // named entries
  Append16(out, static_cast<unsigned>(entries));
}

// Three levels of directories - types, ids, languages - then the data entries, then the data.
std::string ResourceSection(const Resources& resources) {
  constexpr uint32_t kSubdirectory = 0x80000000;
  size_t count = 0;
  for (const auto& [type, ids] : resources) count += ids.size();
  size_t typePlace = 16 + 8 * resources.size();
  size_t idPlace = typePlace + 16 * resources.size() + 8 * count;
  const size_t entryStart = idPlace + 24 * count;
  std::string types, idDirectories, languages, entries, data;
  const size_t dataStart = entryStart + 16 * count;
  AppendDirectory(types, resources.size());
  for (const auto& [type, ids] : resources) {
    Append32(types, type);
    Append32(types, kSubdirectory | static_cast<uint32_t>(typePlace));
    typePlace += 16 + 8 * ids.size();
    AppendDirectory(idDirectories, ids.size());
    for (const auto& [id, resource] : ids) {
      Append32(idDirectories, id);
      Append32(idDirectories, kSubdirectory | static_cast<uint32_t>(idPlace));
      idPlace += 24;
      AppendDirectory(languages, 1);
      Append32(languages, resource.language);
      Append32(languages, static_cast<uint32_t>(entryStart + entries.size()));
      Append32(entries, static_cast<uint32_t>(kResourceAddress + dataStart + data.size()));
      Append32(entries, static_cast<uint32_t>(resource.bytes.size()));
      Append64(entries, 0);
      data += resource.bytes;
      AlignTo(data, 8);
    }
  }
  return types + idDirectories + languages + entries + data;
}

// One DLL, one function. The function's address is filled in at kImportAddress + 0x38.
std::string ImportSection() {
  std::string bytes;
  for (const uint32_t field : {kImportAddress + 0x28, 0u, 0u, kImportAddress + 0x58, kImportAddress + 0x38})
    Append32(bytes, field);
  bytes.resize(0x28, '\0');  // the list of DLLs ends with an empty entry
  for (int table = 0; table < 2; ++table) {
    Append64(bytes, kImportAddress + 0x48);
    Append64(bytes, 0);
  }
  Append16(bytes, 0);
  bytes += "ExitProcess";
  bytes.resize(0x58, '\0');
  bytes += "KERNEL32.dll";
  AppendByte(bytes, 0);
  return bytes;
}

std::string CodeSection() {
  std::string code("\x48\x83\xEC\x28\x31\xC9\xFF\x15", 8);  // sub rsp,28h; xor ecx,ecx; call [rip+...]
  Append32(code, kImportAddress + 0x38 - (kCodeAddress + 12));
  AppendByte(code, 0xCC);
  return code;
}

struct Directory {
  uint32_t address = 0;
  uint32_t length = 0;
};

std::string OptionalHeader(uint32_t imageLength, Directory resources) {
  std::string header;
  Append16(header, 0x20B);  // 64-bit
  Append16(header, 14);
  for (const uint32_t field : {kFileStep, 2 * kFileStep, 0u, kCodeAddress, kCodeAddress})
    Append32(header, field);
  Append64(header, 0x140000000);
  Append32(header, kMemoryStep);
  Append32(header, kFileStep);
  for (const unsigned version : {6u, 0u, 0u, 0u, 6u, 0u, 0u, 0u}) Append16(header, version);
  Append32(header, imageLength);
  Append32(header, kHeaderLength);
  Append32(header, 0);
  Append16(header, 3);       // console
  Append16(header, 0x8100);  // data is not executable, terminal server aware
  for (const uint64_t size : {0x100000u, 0x1000u, 0x100000u, 0x1000u}) Append64(header, size);
  Append32(header, 0);
  Append32(header, 16);
  Directory directories[16];
  directories[1] = {kImportAddress, 0x28};
  directories[2] = resources;
  directories[12] = {kImportAddress + 0x38, 16};
  for (const Directory& directory : directories) {
    Append32(header, directory.address);
    Append32(header, directory.length);
  }
  return header;
}

std::string FileHeader(size_t sections, size_t optionalLength) {
  std::string header("PE\0\0", 4);
  Append16(header, 0x8664);
  Append16(header, static_cast<unsigned>(sections));
  for (int field = 0; field < 3; ++field) Append32(header, 0);
  Append16(header, static_cast<unsigned>(optionalLength));
  Append16(header, 0x23);  // executable, no relocations, large addresses
  return header;
}

std::string SectionHeader(const Section& section, uint32_t filePlace) {
  std::string header = section.name;
  header.resize(8, '\0');
  Append32(header, static_cast<uint32_t>(section.bytes.size()));
  Append32(header, section.address);
  Append32(header, RoundUp(section.bytes.size(), kFileStep));
  Append32(header, filePlace);
  header.resize(36, '\0');
  Append32(header, section.flags);
  return header;
}

std::string DosHeader() {
  std::string header = "MZ";
  header.resize(0x3C, '\0');
  Append32(header, 0x40);  // the PE header follows at once
  return header;
}

std::vector<Section> Sections(const Resources& resources) {
  std::vector<Section> sections = {{".text", kCodeAddress, 0x60000020, CodeSection()},
                                   {".idata", kImportAddress, 0xC0000040, ImportSection()}};
  if (!resources.empty())
    sections.push_back({".rsrc", kResourceAddress, 0x40000040, ResourceSection(resources)});
  return sections;
}

}  // namespace

std::string ExecutableBytes(const ExecutableOptions& options) {
  const Resources resources = CollectResources(options);
  const std::vector<Section> sections = Sections(resources);
  const Section& last = sections.back();
  const uint32_t imageLength = last.address + RoundUp(last.bytes.size(), kMemoryStep);
  Directory directory;
  if (!resources.empty()) directory = {kResourceAddress, static_cast<uint32_t>(last.bytes.size())};
  const std::string optional = OptionalHeader(imageLength, directory);
  std::string file = DosHeader() + FileHeader(sections.size(), optional.size()) + optional;
  uint32_t place = kHeaderLength;
  for (const Section& section : sections) {
    file += SectionHeader(section, place);
    place += RoundUp(section.bytes.size(), kFileStep);
  }
  for (const Section& section : sections) {
    AlignTo(file, kFileStep);
    file += section.bytes;
  }
  AlignTo(file, kFileStep);
  if (file.size() < options.size) file.resize(static_cast<size_t>(options.size), '\0');
  return file;
}

}  // namespace tarnwick::desktop
