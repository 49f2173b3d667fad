// Edge: path operations by Windows' own rules.
#include "matching/paths.h"

#include "foundation/conversions.h"
#include "foundation/machine/known_folders.h"
#include "foundation/machine/path_rules.h"
#include "foundation/text.h"

#include <algorithm>

namespace tarnwick {
namespace {

// Kept: the test is for WOW64, not for a 64-bit Windows. A 64-bit build never takes the 64 field
// (docs/decisions/catalogue-fields.md).
const std::string& PickField(const std::string& plain, const std::string& for32, const std::string& for64) {
  if (!plain.empty()) return plain;
  if (!for64.empty() && RunsUnderWow64()) return for64;
  return for32;
}

void ReplaceToken(std::string& text, const std::string& token, size_t length, KnownFolder known) {
  for (size_t at = text.find(token); at != std::string::npos;) {
    const std::string folder = KnownFolderPath(known);
    if (!folder.empty()) text.replace(at, length, folder);
    at = text.find(token, at + (folder.empty() ? length : folder.size()));
  }
}

// Erases the last element that equals `segment` without regard to case, if there is one.
void EraseLastEqual(std::vector<std::string>& segments, const std::string& segment) {
  const auto found = std::find_if(segments.rbegin(), segments.rend(), [&](const std::string& candidate) {
    return ToLowerBytes(candidate) == ToLowerBytes(segment);
  });
  if (found != segments.rend()) segments.erase(std::next(found).base());
}

std::string JoinAll(std::string path, const std::vector<std::string>& segments) {
  for (const std::string& segment : segments) path = CombinePath(path, segment);
  return path;
}

}  // namespace

std::string CombinePath(const std::string& first, const std::string& second) {
  if (first.empty()) return second;
  if (second.empty()) return first;
  const bool network = second.starts_with("\\\\") || second.starts_with("//");
  const std::wstring wideFirst = Utf8ToWide(first);
  const std::wstring wideSecond = Utf8ToWide(network ? second : TrimLeadingSeparators(second));
  return WideToUtf8(CombineByShell(wideFirst, wideSecond));
}

std::string GetParentFolder(const std::string& path) {
  constexpr int kFolderUnits = 260;
  return WideToUtf8(FolderOf(Utf8ToWide(path), kFolderUnits));
}

std::string GetDefaultExe(const GameSignature& signature) {
  return PickField(signature.DefaultExe, signature.DefaultExe32, signature.DefaultExe64);
}

std::string GetDefaultFolder(const GameSignature& signature) {
  return PickField(signature.DefaultFolder, signature.DefaultFolder32, signature.DefaultFolder64);
}

std::string GetDefaultFolderExe(const GameSignature& signature) {
  return PickField(signature.DefaultFolderExe, signature.DefaultFolderExe32, signature.DefaultFolderExe64);
}

std::string ExpandPathTokens(const std::string& text) {
  if (text.empty()) return {};
  std::string expanded = text;
  // Kept: the first token has 14 characters and 15 are replaced, so the character behind it goes with it
  // (docs/decisions/install-paths.md).
  ReplaceToken(expanded, "%ProgramFiles%", 15, KnownFolder::kProgramFiles);
  ReplaceToken(expanded, "%ProgramFiles(x86)%", 19, KnownFolder::kProgramFilesX86);
  return ExpandNarrowVariables(expanded);
}

std::string BuildDrivePath(const std::string& driveRoot, const std::string& folder, const std::string& exe) {
  if (folder.empty() || exe.empty()) return {};
  std::string rest = ExpandPathTokens(folder);
  // The drive, its colon and one more character go, whatever that is; with nothing behind the colon, substr
  // throws.
  if (rest.size() >= 2 && rest[1] == ':') rest = rest.substr(3);
  const std::string root = driveRoot.empty() ? "C:\\" : driveRoot;
  return CombinePath(root, CombinePath(TrimLeadingSeparators(rest), exe));
}

std::string ResolveDefaultExePath(const GameSignature& signature, const std::string& driveRoot) {
  const std::string folder = GetDefaultFolder(signature);
  const std::string exe = GetDefaultExe(signature);
  if (folder.empty() || exe.empty()) return {};
  const std::string path = BuildDrivePath(driveRoot, folder, exe);
  return path.empty() ? CombinePath(ExpandPathTokens(folder), exe) : path;
}

std::string JoinFolderFragment(const std::string& folder, const std::string& fragment, bool merge) {
  if (folder.empty()) return fragment;
  if (fragment.empty()) return folder;
  const std::string base = NormalizeFragment(folder);
  const std::string rest = NormalizeFragment(fragment);
  return merge && FolderOverlapsFragment(base, rest) ? MergeOverlappingFragment(base, rest)
                                                     : CombinePath(base, rest);
}

std::vector<std::string> BuildFolderCandidates(const std::string& exePath,
                                               const std::vector<std::string>& fragments) {
  std::vector<std::string> candidates = {exePath};
  if (fragments.empty()) return candidates;
  const std::string parent = GetParentFolder(exePath);
  if (parent.empty()) return candidates;
  std::vector<std::string> parts = SplitPathSegments(parent);
  std::erase(parts, ":");
  const std::string root = parent.size() >= 3 && parent[1] == ':' ? parent.substr(0, 3) : "C:\\";
  for (const std::string& fragment : fragments) {
    const std::vector<std::string> segments = SplitPathSegments(NormalizeFragment(fragment));
    if (segments.empty()) continue;
    std::vector<std::string> work = parts;
    for (const std::string& segment : segments) EraseLastEqual(work, segment);
    const std::string candidate = JoinAll(JoinAll(root, work), segments);
    if (!candidate.empty()) candidates.push_back(candidate);
  }
  return candidates;
}

std::string FirstExistingDefaultExe(const std::string& folder, const GameSignature& signature) {
  for (const std::string* exe : {&signature.DefaultExe, &signature.DefaultExe32, &signature.DefaultExe64}) {
    if (exe->empty()) continue;
    const std::string candidate = CombinePath(folder, *exe);
    if (FileExists(candidate)) return candidate;
  }
  return {};
}

std::string ResolveExeFromInstallText(const std::string& text, const GameSignature& signature) {
  for (const std::string& token : SplitCommandLine(text)) {
    const bool hasExtension = !GetExtension(token).empty();
    const bool isFile = FileExists(token);
    if (hasExtension && isFile && ContainsIgnoreCase(token, signature.DefaultExe)) return token;
    // Kept: a text that looks like a file's, with a dot in it, and isn't one is passed over. So a folder with
    // a dot in its path never serves as a folder (docs/decisions/install-paths.md).
    if (hasExtension && !isFile) continue;
    const std::string exe = FirstExistingDefaultExe(token, signature);
    if (!exe.empty()) return exe;
  }
  return {};
}

}  // namespace tarnwick
