#include "foundation/com_scope.h"

#include "foundation/windows_api.h"

#include <gtest/gtest.h>
#include <objbase.h>

#include <optional>
#include <thread>

namespace tarnwick {
namespace {

// The calling thread's own apartment; nothing if it never entered one (another thread's multithreaded
// apartment doesn't count).
std::optional<APTTYPE> Apartment() {
  APTTYPE type = APTTYPE_CURRENT;
  APTTYPEQUALIFIER qualifier = APTTYPEQUALIFIER_NONE;
  if (CoGetApartmentType(&type, &qualifier) != S_OK) return std::nullopt;
  if (qualifier == APTTYPEQUALIFIER_IMPLICIT_MTA) return std::nullopt;
  return type == APTTYPE_MAINSTA ? APTTYPE_STA : type;
}

template <class Body>
void OnThread(Body body) {
  std::thread(body).join();
}

TEST(ComScope, EntersTheMultithreadedApartmentForItsLength) {
  OnThread([] {
    ASSERT_EQ(Apartment(), std::nullopt);
    {
      const ComScope scope;
      EXPECT_EQ(Apartment(), APTTYPE_MTA);
    }
    EXPECT_EQ(Apartment(), std::nullopt);
  });
}

TEST(ComScope, Nests) {
  OnThread([] {
    {
      const ComScope outer;
      {
        const ComScope inner;
      }
      EXPECT_EQ(Apartment(), APTTYPE_MTA);
    }
    EXPECT_EQ(Apartment(), std::nullopt);
  });
}

TEST(ComScope, ServesAThreadOfTheSingleThreadedApartment) {
  OnThread([] {
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
    {
      const ComScope scope;
      EXPECT_EQ(Apartment(), APTTYPE_STA);
    }
    EXPECT_EQ(Apartment(), APTTYPE_STA);
    CoUninitialize();
    EXPECT_EQ(Apartment(), std::nullopt);
  });
}

TEST(ComScope, LeavesTheCallersMultithreadedApartmentStanding) {
  OnThread([] {
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    {
      const ComScope scope;
    }
    EXPECT_EQ(Apartment(), APTTYPE_MTA);
    CoUninitialize();
    EXPECT_EQ(Apartment(), std::nullopt);
  });
}

}  // namespace
}  // namespace tarnwick
