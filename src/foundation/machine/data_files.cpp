// Edge: opening and reading data files.
#include "foundation/machine/data_files.h"

#include "foundation/conversions.h"
#include "foundation/machine/observer.h"
#include "foundation/owner_template.h"
#include "foundation/text.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>

namespace tarnwick {
namespace {

using machine::AskMachine;

struct FileTraits {
  using Value = std::FILE*;
  static Value None() { return nullptr; }
  static void Close(Value file) { std::fclose(file); }
};
using OpenFile = Owner<FileTraits>;

Question FileQuestion(QuestionKind kind, const std::wstring& path, const char* way) {
  return {kind, WideToUtf8(path), way, {}, {}};
}

DataFile FailedFile() {
  DataFile file = std::make_unique<std::istringstream>();
  file->setstate(std::ios::failbit);
  return file;
}

// The observer is told the file's bytes. Reading them uses up the stream, so the asker gets another on the
// same bytes.
Answer TellContents(DataFile& file) {
  if (!*file) return {false, "can't be opened"};
  Answer answer{true, ReadAll(*file)};
  file = std::make_unique<std::istringstream>(answer.text);
  return answer;
}

DataFile Open(QuestionKind kind, const std::wstring& path, std::ios::openmode mode) {
  return AskMachine(
      [&] { return FileQuestion(kind, path, ""); }, FailedFile,
      [&]() -> DataFile { return std::make_unique<std::ifstream>(std::filesystem::path(path), mode); },
      TellContents);
}

std::optional<std::string> WholeFile(const std::wstring& path) {
  OpenFile file;
  if (_wfopen_s(file.Receive(), path.c_str(), L"rb") != 0 || !file) return std::nullopt;
  if (std::fseek(file.Get(), 0, SEEK_END) != 0) return std::nullopt;
  const long size = std::ftell(file.Get());
  if (size <= 0 || std::fseek(file.Get(), 0, SEEK_SET) != 0) return std::nullopt;
  std::string contents(static_cast<size_t>(size), '\0');
  if (std::fread(contents.data(), 1, contents.size(), file.Get()) != contents.size()) return std::nullopt;
  return contents;
}

}  // namespace

DataFile OpenTextFile(const std::string& path) { return OpenTextFile(Utf8ToWide(path)); }

DataFile OpenTextFile(const std::wstring& path) {
  return Open(QuestionKind::kReadTextFile, path, std::ios::in);
}

DataFile OpenBinaryFile(const std::string& path) { return OpenBinaryFile(Utf8ToWide(path)); }

DataFile OpenBinaryFile(const std::wstring& path) {
  return Open(QuestionKind::kReadBinaryFile, path, std::ios::in | std::ios::binary);
}

bool ReadWholeFile(const std::wstring& path, std::string& contents) {
  std::optional<std::string> read = AskMachine(
      [&] { return FileQuestion(QuestionKind::kReadBinaryFile, path, "whole"); },
      [] { return std::optional<std::string>(); }, [&] { return WholeFile(path); },
      [](const auto& whole) { return whole ? Answer{true, *whole} : Answer{false, "can't be read"}; });
  contents = read ? std::move(*read) : std::string();
  return read.has_value();
}

}  // namespace tarnwick
