// Edge: the process-wide locks.
#include "foundation/locks.h"

#include "foundation/windows_api.h"

namespace tarnwick {
namespace {

CRITICAL_SECTION* SectionIn(void** room) { return reinterpret_cast<CRITICAL_SECTION*>(room); }

}  // namespace

static_assert(sizeof(CRITICAL_SECTION) == sizeof(CriticalSection) &&
              alignof(CRITICAL_SECTION) == alignof(CriticalSection));

CriticalSection::CriticalSection() { InitializeCriticalSection(SectionIn(section_)); }

CriticalSection::~CriticalSection() { DeleteCriticalSection(SectionIn(section_)); }

void CriticalSection::Enter() { EnterCriticalSection(SectionIn(section_)); }

void CriticalSection::Leave() { LeaveCriticalSection(SectionIn(section_)); }

CriticalSection g_apiLock;
CriticalSection g_cacheLock;

}  // namespace tarnwick
