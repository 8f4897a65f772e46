// Device-compatible bitmaps: sizes, the handle made from them, copies.
#include "velkin/gdi/gdi_bitmap.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "velkin/gdi/gdi_dib.h"

namespace {

TEST(HCustomGDIBitmap, SizesHandleAndAssign) {
  HGDIBitmap bmp;
  bmp.Assign(30, 0);
  EXPECT_EQ(1, bmp.GetHeight());
  bmp.SetHeight(12);
  BITMAP bm{};
  ASSERT_GT(GetObjectA(bmp.GetHandle(), sizeof bm, &bm), 0);
  EXPECT_EQ((MyPoint{30, 12}), (MyPoint{bm.bmWidth, bm.bmHeight}));

  HGDIDib dib8(8, 10, 3);

  HGDIDib32 dib(4, 4);
  dib.Assign(&bmp);
  EXPECT_EQ((MyPoint{30, 12}), (MyPoint{dib.GetWidth(), dib.GetHeight()}));
  dib.Assign(static_cast<Classes::TPersistent*>(&dib8));  // ignored on purpose
  dib.Assign(static_cast<Classes::TPersistent*>(nullptr));
  EXPECT_EQ(30, dib.GetWidth());
}

}  // namespace
