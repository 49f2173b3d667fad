// The desktop itself: keeps the journal of what was made, and undoes it.
#include "desktop/desktop.h"

#include "common/capture_rules.h"
#include "desktop/file_maker.h"
#include "desktop/held_folder.h"
#include "desktop/journal.h"
#include "desktop/junction.h"
#include "desktop/registry_maker.h"
#include "desktop/value_bytes.h"
#include "foundation/windows_api.h"

#include <cstdlib>
#include <exception>
#include <set>
#include <tuple>

namespace tarnwick::desktop {
namespace {

using Kind = MadeThing::Kind;

void RequireThrowawayMachine() {
  const char* throwaway = std::getenv("TARNWICK_THROWAWAY_MACHINE");
  if (throwaway == nullptr || std::string(throwaway) != "1")
    throw std::runtime_error(
        "A desktop changes the registry and drive C:. Set TARNWICK_THROWAWAY_MACHINE=1 on a machine that may "
        "be spoilt.");
}

constexpr uint64_t kLeastSparse = 1 << 20;  // fewer zeros may take their room

bool InRegistry(const MadeThing& thing) { return thing.kind == Kind::kKey || thing.kind == Kind::kValue; }

void UndoAll(Journal& journal) {
  std::exception_ptr first;
  while (!journal.empty()) {
    try {
      InRegistry(journal.back()) ? UnmakeRegistry(journal.back()) : UnmakeFile(journal.back());
    } catch (...) {
      if (!first) first = std::current_exception();
    }
    journal.pop_back();
  }
  if (first) std::rethrow_exception(first);
}

}  // namespace

// What a place is called: a file or value that was written twice has its old content in the journal already.
using PlaceName = std::tuple<Kind, std::string, std::string, View>;

struct Desktop::State {
  Journal journal;
  std::set<PlaceName> known;
  bool keep = false;

  ~State() {
    if (keep) return;
    try {
      UndoAll(journal);
    } catch (const std::exception& error) {
      OutputDebugStringA((std::string("[TarnwickDesktop] ") + error.what() + "\n").c_str());
    }
  }

  // True from the second time on.
  bool Known(Kind kind, const std::string& place, const std::string& name = {}, View view = View::kNative) {
    return known.contains({kind, place, name, view});
  }

  void Learn(Kind kind, const std::string& place, const std::string& name = {}, View view = View::kNative) {
    known.insert({kind, place, name, view});
  }
};

Desktop::Desktop() : Desktop(Journal{}) {}

Desktop::Desktop(std::vector<MadeThing> made) {
  RequireThrowawayMachine();
  state_ = std::make_unique<State>();
  for (const MadeThing& thing : made) state_->Learn(thing.kind, thing.place, thing.name, thing.view);
  state_->journal = std::move(made);
}

Desktop::~Desktop() = default;
Desktop::Desktop(Desktop&&) noexcept = default;
Desktop& Desktop::operator=(Desktop&&) noexcept = default;

void Desktop::Keep() { state_->keep = true; }

void Desktop::Remove() {
  state_->known.clear();
  UndoAll(state_->journal);
}

const std::vector<MadeThing>& Desktop::Made() const { return state_->journal; }

void Desktop::Folder(const std::string& path) { MakeFolder(path, state_->journal); }

void Desktop::File(const std::string& path, std::string_view bytes) {
  MakeFile(path, bytes, 0, false, state_->Known(Kind::kFile, path), state_->journal);
  state_->Learn(Kind::kFile, path);
}

void Desktop::SparseFile(const std::string& path, uint64_t size) {
  MakeFile(path, {}, size, true, state_->Known(Kind::kFile, path), state_->journal);
  state_->Learn(Kind::kFile, path);
}

void Desktop::PaddedFile(const std::string& path, std::string_view bytes, uint64_t size) {
  const bool sparse = size > bytes.size() + kLeastSparse;
  MakeFile(path, bytes, size, sparse, state_->Known(Kind::kFile, path), state_->journal);
  state_->Learn(Kind::kFile, path);
}

void Desktop::ModifiedTime(const std::string& path, int64_t unixSeconds) {
  // A file of this desktop's own goes anyway, or gets its old time back with its old content.
  const bool known = state_->Known(Kind::kTime, path) || state_->Known(Kind::kFile, path);
  SetModifiedTime(path, unixSeconds, known, state_->journal);
  state_->Learn(Kind::kTime, path);
}

void Desktop::HoldFolder(const std::string& path) {
  HoldFolderApart(common::TidyPath(path), state_->journal);
}

void Desktop::Junction(const std::string& path, const std::string& target) {
  MakeJunction(path, target, state_->journal);
}

void Desktop::Executable(const std::string& path, const ExecutableOptions& options) {
  ExecutableOptions unpadded = options;
  unpadded.size = 0;
  PaddedFile(path, ExecutableBytes(unpadded), options.size);
}

void Desktop::IconFile(const std::string& path, const IconGroup& icon) { File(path, IconFileBytes(icon)); }

void Desktop::Key(const std::string& key, View view) { MakeKey(key, view, state_->journal); }

void Desktop::RawValue(const std::string& key, const std::string& name, uint32_t type, std::string_view bytes,
                       View view) {
  MakeValue(key, name, view, type, bytes, state_->Known(Kind::kValue, key, name, view), state_->journal);
  state_->Learn(Kind::kValue, key, name, view);
}

void Desktop::String(const std::string& key, const std::string& name, const std::string& text, View view) {
  RawValue(key, name, REG_SZ, TerminatedUnits(text), view);
}

void Desktop::ExpandString(const std::string& key, const std::string& name, const std::string& text,
                           View view) {
  RawValue(key, name, REG_EXPAND_SZ, TerminatedUnits(text), view);
}

void Desktop::MultiString(const std::string& key, const std::string& name,
                          const std::vector<std::string>& texts, View view) {
  std::string bytes;
  for (const std::string& text : texts) bytes += TerminatedUnits(text);
  Append16(bytes, 0);
  RawValue(key, name, REG_MULTI_SZ, bytes, view);
}

void Desktop::Dword(const std::string& key, const std::string& name, uint32_t value, View view) {
  RawValue(key, name, REG_DWORD, DwordBytes(value), view);
}

void Desktop::Qword(const std::string& key, const std::string& name, uint64_t value, View view) {
  std::string bytes;
  Append64(bytes, value);
  RawValue(key, name, REG_QWORD, bytes, view);
}

void Desktop::Binary(const std::string& key, const std::string& name, std::string_view bytes, View view) {
  RawValue(key, name, REG_BINARY, bytes, view);
}

}  // namespace tarnwick::desktop
