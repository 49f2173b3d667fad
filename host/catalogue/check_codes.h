#pragma once
// Everything that the check of a catalogue can say: one row for each, in the order of their codes. A code
// never changes its meaning, and none is used again.

#include <array>
#include <cstdint>
#include <string_view>

namespace tarnwick::host {

enum class Severity : uint8_t { kWarning, kError };

// In the order of the table.
enum class Check : uint8_t {
  kNoRecord,
  kRecordNotClosed,
  kNotWellFormed,
  kSwallowedElement,
  kUtf16,
  kOtherEncoding,
  kNoUtf8,
  kNotDeciphered,
  kNoSource,
  kSteamWithoutId,
  kSteamIdNoNumber,
  kStoreWithoutFamily,
  kNoName,
  kNeverTested,
  kDocumentType,
  kTooLarge,
  kTooDeep,
  kSameName,
  kSameId,
  kSkippedRecord,
  kSkippedElement,
  kEntityLeft,
  kWhiteSpace,
  kUnknownElement,
  kGuidBraces,
  kRegistryHive,
  kDriveAlone,
  kEatenBackslash,
  kCommonExe,
  kForeignUrl,
  kHidingUrl,
  kRepeatedElement,
  kMarkupInText,
  kReadInComment,
  kByteOrderMark,
  kCount,
};

struct CheckRow {
  Check check;
  std::string_view code;
  Severity severity;
  std::string_view title;
  std::string_view hint;  // what to do
};

using enum Check;
inline constexpr std::array kChecks = {
    CheckRow{kNoRecord, "TC001", Severity::kError, "no record",
             "put each game between <GameSignature> and </GameSignature>, written exactly so"},
    CheckRow{kRecordNotClosed, "TC002", Severity::kError, "record not closed",
             "end the record with </GameSignature>, written exactly so"},
    CheckRow{kNotWellFormed, "TC003", Severity::kError, "not well-formed XML",
             "mend the markup at this place; what is behind it was not parsed"},
    CheckRow{kSwallowedElement, "TC004", Severity::kError,
             "element behind one whose name begins with its own",
             "put the shorter name ahead of the longer one; catalogue fix does it"},
    CheckRow{kUtf16, "TC005", Severity::kError, "UTF-16", "save the file as UTF-8; catalogue fix does it"},
    CheckRow{kOtherEncoding, "TC006", Severity::kError, "another encoding is declared",
             "save the file as UTF-8 and declare encoding=\"utf-8\"; catalogue fix does it for Windows' and "
             "ISO's code pages"},
    CheckRow{kNoUtf8, "TC007", Severity::kError, "bytes that are no UTF-8",
             "save the file as UTF-8, or declare its encoding and let catalogue fix convert it"},
    CheckRow{kNotDeciphered, "TC008", Severity::kError, "cipher text that can't be deciphered",
             "get the file anew: it was cut or changed, or enciphered with another key"},
    CheckRow{kNoSource, "TC009", Severity::kError, "SourceEx that is no source",
             "write DIRECT, STEAM, EPIC, GOG, UPLAY, EA, BATTLENET, UWP, RIOT, MIHOYO, ARC or BETHESDA, or "
             "leave the element out"},
    CheckRow{kSteamWithoutId, "TC010", Severity::kError, "Steam record without SourceExId",
             "put the game's app id into SourceExId, or leave SourceEx out"},
    CheckRow{kSteamIdNoNumber, "TC011", Severity::kError, "Steam record whose SourceExId is no app id",
             "write the app id in decimal digits alone, without leading zeros"},
    CheckRow{kStoreWithoutFamily, "TC012", Severity::kError, "UWP record without GameInfo",
             "put the package family name into GameInfo, such as Publisher.Game_8wekyb3d8bbwe"},
    CheckRow{kNoName, "TC013", Severity::kError, "record without DisplayName",
             "name the game in DisplayName"},
    CheckRow{kNeverTested, "TC014", Severity::kError, "record that no strategy ever tests",
             "add the elements that one of the strategies wants"},
    CheckRow{kDocumentType, "TC015", Severity::kError, "document type",
             "take the <!DOCTYPE> out, and write out what its entities stand for"},
    CheckRow{kTooLarge, "TC016", Severity::kError, "file too large",
             "name a catalogue; one of 20,000 games has some 20 MiB"},
    CheckRow{kTooDeep, "TC017", Severity::kError, "elements nested too deeply",
             "a catalogue is flat: root, GameSignature, element"},
    CheckRow{kSameName, "TC101", Severity::kWarning, "same name and source twice",
             "keep one of the records, or tell the games apart by their names"},
    CheckRow{kSameId, "TC102", Severity::kWarning, "same source and id twice",
             "keep one of the records: of equal ids a strategy takes the last"},
    CheckRow{kSkippedRecord, "TC103", Severity::kWarning, "record that the library skips",
             "write <GameSignature> without attribute, blank or prefix"},
    CheckRow{kSkippedElement, "TC104", Severity::kWarning, "element that the library skips or cuts",
             "write the tags with the name alone: <Name>text</Name>"},
    CheckRow{kEntityLeft, "TC105", Severity::kWarning, "reference left in the text",
             "write the character itself; only amp, lt, gt, quot, apos and numbers are decoded, and once"},
    CheckRow{kWhiteSpace, "TC106", Severity::kWarning, "white space that is trimmed or collapsed",
             "write the text as it is read: catalogue fix does it"},
    CheckRow{kUnknownElement, "TC107", Severity::kWarning, "unknown element",
             "correct the name (case counts), or take the element out"},
    CheckRow{kGuidBraces, "TC108", Severity::kWarning, "GameGUID with braces",
             "write the GUID without braces: the library puts them around it"},
    CheckRow{kRegistryHive, "TC109", Severity::kWarning, "registry key without a hive that is known",
             "begin with HKEY_LOCAL_MACHINE\\, HKEY_CURRENT_USER\\, HKEY_USERS\\ or HKEY_CLASSES_ROOT\\, in "
             "capitals"},
    CheckRow{kDriveAlone, "TC110", Severity::kWarning, "default folder that is a drive alone",
             "name the game's folder, such as C:\\Games\\Fernpad"},
    CheckRow{kEatenBackslash, "TC111", Severity::kWarning, "%ProgramFiles% that eats what follows it",
             "write %PROGRAMFILES% in capitals, which is expanded without that"},
    CheckRow{kCommonExe, "TC112", Severity::kWarning, "executable that names many games",
             "name the game's own executable, or put its folder in front: bin\\game.exe"},
    CheckRow{kForeignUrl, "TC113", Severity::kWarning, "LaunchUrl that can't be the source's",
             "write the launch URL of the record's source, or take it out"},
    CheckRow{kHidingUrl, "TC114", Severity::kWarning, "LaunchUrl that hides a Steam record",
             "take LaunchUrl out: Steam's strategies make their own"},
    CheckRow{kRepeatedElement, "TC115", Severity::kWarning, "element that stands twice in a record",
             "keep one: the library reads the first"},
    CheckRow{kMarkupInText, "TC116", Severity::kWarning, "markup that stays in the text",
             "take comments, CDATA sections and elements out of the text; write &lt; for <"},
    CheckRow{kReadInComment, "TC117", Severity::kWarning, "comment that hides nothing",
             "take out what the comment holds: the library reads it"},
    CheckRow{
        kByteOrderMark, "TC118", Severity::kWarning, "byte-order mark",
        "save the file as UTF-8 without a mark, which the library tries to decipher; catalogue fix does it"},
};

constexpr const CheckRow& RowOf(Check check) { return kChecks[static_cast<size_t>(check)]; }

constexpr bool ChecksAreInOrder() {
  for (size_t i = 0; i < kChecks.size(); ++i) {
    if (static_cast<size_t>(kChecks[i].check) != i) return false;
    if (i > 0 && kChecks[i - 1].code >= kChecks[i].code) return false;
  }
  return kChecks.size() == static_cast<size_t>(kCount);
}
static_assert(ChecksAreInOrder());

}  // namespace tarnwick::host
