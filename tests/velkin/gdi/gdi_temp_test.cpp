// The temporary object pool: registration by name, the typed fetch and its
// exact message, and the unit's start-up and shut-down of TempPool.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <string>

#include "platform/vcl/sysutils.h"
#include "velkin/gdi/gdi_temp.h"

namespace {

int creatorRuns = 0;
HTempItem* CountingCreator(unsigned long data) {
  ++creatorRuns;
  return new HTemp_CompatibleDC(reinterpret_cast<void*>(static_cast<uintptr_t>(data)));
}
HTempItem* NullCreator(unsigned long) { return nullptr; }
HTempItem* WindowCreator(unsigned long) { return new HTemp_WindowDC(nullptr); }

std::string Expected(const char* name, HTempCreator creator, unsigned long data) {
  return std::string("Can not retrive temprorary item named: [") + name +
         "] by: Proc:" + std::to_string(reinterpret_cast<uintptr_t>(creator)) + "Data: " + std::to_string(data);
}

template <class T>
std::string FetchError(const char* name, HTempCreator creator, unsigned long data) {
  try {
    HTempGet<T>(name, creator, data);
  } catch (Sysutils::Exception& e) {
    return e.Message.c_str();
  }
  return "(no exception)";
}

TEST(GdiTempPool, GetRegistersOncePerName) {
  HTempPool pool;
  creatorRuns = 0;
  HTempItem* a = pool.Get("All.HTemp_CompatibleDC", CountingCreator, 0);
  HTempItem* b = pool.Get("All.HTemp_CompatibleDC", CountingCreator, 0);
  ASSERT_NE(nullptr, a);
  EXPECT_EQ(a, b);
  EXPECT_EQ(1, creatorRuns);
  EXPECT_EQ(OBJ_MEMDC, GetObjectType(static_cast<HGDIOBJ>(a->GetDC())));
  EXPECT_EQ(a, pool.Get("All.HTemp_CompatibleDC", nullptr, 0)) << "a known name needs no creator";

  EXPECT_EQ(nullptr, pool.Get("Other", nullptr, 0));
  EXPECT_EQ(nullptr, pool.Get("Other", NullCreator, 0));
  EXPECT_EQ(1, pool.GetCount()) << "failures add nothing";
  HTempItem* lower = pool.Get("all.htemp_compatibledc", CountingCreator, 0);
  EXPECT_NE(a, lower) << "names are case-sensitive";
  EXPECT_EQ(2, pool.GetCount());
}

TEST(GdiTempPool, TypedFetchAndUnitLifecycle) {
  const int starts = Gdi_temp::StartUpRuns(), stops = Gdi_temp::ShutDownRuns();
  // The test program links the library without loading it as a package, so
  // nothing has started the unit yet.
  ASSERT_EQ(nullptr, TempPool);
  EXPECT_EQ(Expected("X", CountingCreator, 0), FetchError<HTemp_CompatibleDC>("X", CountingCreator, 0))
      << "no pool before the unit starts";

  Gdi_temp::Initialize();
  Gdi_temp::Initialize();
  ASSERT_NE(nullptr, TempPool);
  EXPECT_EQ(starts + 1, Gdi_temp::StartUpRuns());

  EXPECT_EQ(Expected("X", NullCreator, 77), FetchError<HTemp_CompatibleDC>("X", NullCreator, 77));
  EXPECT_EQ(Expected("Y", nullptr, 5), FetchError<HTemp_WindowDC>("Y", nullptr, 5));
  // A name registered with one class and fetched as the other.
  HTemp_WindowDC* screen = HTempGet<HTemp_WindowDC>("Screen", WindowCreator, 0);
  ASSERT_NE(nullptr, screen);
  EXPECT_EQ(Expected("Screen", WindowCreator, 3), FetchError<HTemp_CompatibleDC>("Screen", WindowCreator, 3));
  auto* mem = HTempGet<HTemp_CompatibleDC>("All.HTemp_CompatibleDC", HTempCreateCompatibleDC, 0);
  HDC memDC = static_cast<HDC>(mem->GetDC());
  EXPECT_EQ(OBJ_MEMDC, GetObjectType(memDC));
  EXPECT_EQ(2, TempPool->GetCount());

  // Only the matching last stop destroys the pool with every DC it holds.
  Gdi_temp::Finalize();
  EXPECT_NE(nullptr, TempPool);
  Gdi_temp::Finalize();
  EXPECT_EQ(nullptr, TempPool);
  EXPECT_EQ(stops + 1, Gdi_temp::ShutDownRuns());
  EXPECT_EQ(0u, GetObjectType(memDC)) << "memory DC not deleted";
}

}  // namespace
