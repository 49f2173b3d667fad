#pragma once
// The JSON texts of the inventory: arrays of flat objects, without white space.

#include "inventory/app_record.h"

#include <string>

namespace tarnwick {

// What an object says beside its record's own members.
struct AppListEntry {
  const AppRecord& record;
  const std::wstring& name;        // "name"
  const std::wstring& executable;  // "loc", by way of NormalizeLocPath
  bool withExeName = false;        // whether "exeName", the executable's file name, stands behind "loc"
};

// Appends one object to an array that begins with "[", with a comma in front unless it is the first. The icon
// goes in as it stands; every other text is escaped.
void AppendAppObject(std::wstring& json, const AppListEntry& entry);

}  // namespace tarnwick
