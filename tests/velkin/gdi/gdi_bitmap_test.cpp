// Device-compatible bitmaps: sizes, the handle made from them, and copies.
// CorrectRect is checked through its use by HGDIDib32::AntiAlias, on every
// edge of many sizes (gdi_dib_test).
#include "velkin/gdi/gdi_bitmap.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "tests/velkin/gdi/gdi_fixtures.h"
#include "velkin/gdi/gdi_dib.h"

namespace {

TEST(HCustomGDIBitmap, SizesHandleAndAssign) {
  HGDIBitmap bmp;
  BITMAP bm{};
  ASSERT_GT(GetObjectA(bmp.GetHandle(), sizeof bm, &bm), 0);
  EXPECT_EQ((MyPoint{1, 1}), (MyPoint{bm.bmWidth, bm.bmHeight})) << "a fresh bitmap";
  bmp.Assign(30, 0);
  EXPECT_EQ(1, bmp.GetHeight()) << "a size below 1 becomes 1";
  bmp.SetHeight(12);
  ASSERT_GT(GetObjectA(bmp.GetHandle(), sizeof bm, &bm), 0);
  EXPECT_EQ((MyPoint{30, 12}), (MyPoint{bm.bmWidth, bm.bmHeight})) << "the handle's size";

  HGDIDib dib8(8, 10, 3);
  HGDIDib32 dib(4, 4);
  dib.Assign(&bmp);
  EXPECT_EQ((MyPoint{30, 12}), (MyPoint{dib.GetWidth(), dib.GetHeight()})) << "size copied";
  dib.Assign(static_cast<Classes::TPersistent*>(&dib8));  // ignored on purpose
  dib.Assign(static_cast<Classes::TPersistent*>(nullptr));
  EXPECT_EQ(30, dib.GetWidth()) << "Assign(TPersistent*) does nothing";
}

}  // namespace
