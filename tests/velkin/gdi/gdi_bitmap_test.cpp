// Device-compatible bitmaps: sizes, the handle made from them, copies, and the
// rectangle correction.
#include "velkin/gdi/gdi_bitmap.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "tests/velkin/gdi/gdi_fixtures.h"
#include "velkin/gdi/gdi_dib.h"

namespace {

TEST(HCustomGDIBitmap, SizesHandleAndAssign) {
  HGDIBitmap bmp;
  bmp.Assign(30, 0);
  EXPECT_EQ(1, bmp.GetHeight()) << "a size below 1 becomes 1";
  bmp.SetHeight(12);
  BITMAP bm{};
  ASSERT_GT(GetObjectA(bmp.GetHandle(), sizeof bm, &bm), 0);
  EXPECT_EQ(30, bm.bmWidth) << "handle width";
  EXPECT_EQ(12, bm.bmHeight) << "handle height";

  HGDIDib dib8(8, 10, 3);
  HGDIDib32 dib(4, 4);
  dib.Assign(&bmp);
  EXPECT_EQ(30, dib.GetWidth()) << "size copied, width";
  EXPECT_EQ(12, dib.GetHeight()) << "size copied, height";
  dib.Assign(static_cast<Classes::TPersistent*>(&dib8));  // ignored on purpose
  dib.Assign(static_cast<Classes::TPersistent*>(nullptr));
  EXPECT_EQ(30, dib.GetWidth()) << "Assign(TPersistent*) does nothing";
}

TEST(HCustomGDIBitmap, CorrectRectOrdersThenClampsToTheBitmap) {
  const struct {
    const char* what;
    MyRect given, corrected;
  } rows[] = {
      {"inside: unchanged", {1, 2, 9, 19}, {1, 2, 9, 19}},
      {"the whole bitmap: unchanged", {0, 0, 10, 20}, {0, 0, 10, 20}},
      {"past every edge", {-3, -4, 11, 21}, {0, 0, 10, 20}},
      {"reversed, then clamped", {5, 7, -2, 100}, {0, 7, 5, 20}},
      {"wholly outside: empty", {12, 3, 15, 5}, {12, 3, 10, 5}},
  };
  HGDIBitmap bitmap;
  bitmap.Assign(10, 20);
  for (const auto& r : rows) {
    MyRect got = r.given;
    bitmap.CorrectRect(got);
    EXPECT_EQ(r.corrected, got) << r.what;
  }
}

}  // namespace
