#pragma once
// Where the things of a captured machine may stand, for those who write captures and those who build them. A
// capture comes from somebody else, so that nothing in it may reach out of the machine's own drives, or into
// what Windows itself runs on; what would be refused isn't captured.
//
// A function that finds a fault gives the reason, as it stands behind the path or key in a message; nothing
// if all is well.

#include <set>
#include <string>

namespace tarnwick::common {

// As Windows compares names: without regard to case.
std::string Folded(const std::string& text);

// One backslash between names, none at the end but a drive's.
std::string TidyPath(const std::string& path);

// `path` is tidy. The drives are capital letters.
std::string PathFault(const std::string& path, const std::set<char>& drives);

// The part of PathFault that is about places of Windows' own, such as C:\Windows.
std::string SystemPathFault(const std::string& path);

// The hive in capitals, one backslash between names, none at the end.
std::string TidyKey(const std::string& key);

// `key` is tidy. A key without values may be one that leads to those allowed.
std::string KeyFault(const std::string& key, bool hasValues);

std::string VariableFault(const std::string& name);

// Variables that this machine needs as they are to run programs at all.
bool IsMachinesOwnVariable(const std::string& name);

}  // namespace tarnwick::common
