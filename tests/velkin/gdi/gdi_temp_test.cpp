// The temporary pool: typed fetches, the texts of failed fetches, and the
// unit start-up and shut-down that make and destroy it.
#include "velkin/gdi/gdi_temp.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <string>

#include "platform/vcl/core/sysutils.h"

namespace {

HTempItem* NullCreator(unsigned long) { return nullptr; }
HTempItem* WindowCreator(unsigned long) { return new HTemp_WindowDC(nullptr); }

std::string Expected(const char* name, HTempCreator creator, unsigned long data) {
  return std::string("Can not retrive temprorary item named: [") + name +
         "] by: Proc:" + std::to_string(reinterpret_cast<uintptr_t>(creator)) + "Data: " + std::to_string(data);
}

// The message of the exception HTempGet<T> raises.
template <class T>
std::string FetchError(const char* name, HTempCreator creator, unsigned long data) {
  try {
    HTempGet<T>(name, creator, data);
  } catch (Sysutils::Exception& e) {
    return e.Message.c_str();
  }
  return "(no exception)";
}

TEST(HTempPool, TypedFetchAndUnitLifecycle) {
  const int starts = Gdi_temp::StartUpRuns(), stops = Gdi_temp::ShutDownRuns();
  // The test program links the library without loading it as a package:
  // nothing has started the unit yet, and the first fetch starts it.
  ASSERT_EQ(nullptr, TempPool);
  ASSERT_NE(nullptr, HTempGet<HTemp_WindowDC>("X", WindowCreator, 0)) << "first use";
  ASSERT_NE(nullptr, TempPool);
  Gdi_temp::Initialize();
  Gdi_temp::Initialize();
  EXPECT_EQ(starts + 1, Gdi_temp::StartUpRuns()) << "started once, by the first use";

  EXPECT_EQ(Expected("X", NullCreator, 77), FetchError<HTemp_CompatibleDC>("X", NullCreator, 77));
  EXPECT_EQ(Expected("Y", nullptr, 5), FetchError<HTemp_WindowDC>("Y", nullptr, 5));
  // A name registered with one class and fetched as the other.
  ASSERT_NE(nullptr, HTempGet<HTemp_WindowDC>("Screen", WindowCreator, 0));
  EXPECT_EQ(Expected("Screen", WindowCreator, 3), FetchError<HTemp_CompatibleDC>("Screen", WindowCreator, 3));
  auto* mem = HTempGet<HTemp_CompatibleDC>("All.HTemp_CompatibleDC", HTempCreateCompatibleDC, 0);
  HDC memDC = static_cast<HDC>(mem->GetDC());
  EXPECT_EQ(DWORD(OBJ_MEMDC), GetObjectType(memDC)) << "the pool's compatible DC";
  EXPECT_EQ(3, TempPool->GetCount()) << "items in the pool";

  // Only the matching last stop destroys the pool with every DC it holds; the
  // start made by the first use is stopped by the library's unload.
  Gdi_temp::Finalize();
  Gdi_temp::Finalize();
  EXPECT_NE(nullptr, TempPool) << "the first use still holds it";
  Gdi_temp::FinalizeFirstUse();
  EXPECT_EQ(nullptr, TempPool) << "after the last stop";
  Gdi_temp::FinalizeFirstUse();
  EXPECT_EQ(stops + 1, Gdi_temp::ShutDownRuns()) << "shut-downs";
  EXPECT_EQ(DWORD(0), GetObjectType(memDC)) << "the pool's DC went with it";
}

}  // namespace
