// Clipping regions: the inclusive edges they are given, and the clip a
// selection sets and puts back.
#include "velkin/gdi/gdi_region.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <string>

#include "tests/velkin/gdi/gdi_fixtures.h"

namespace {

using gdi_fixtures::MemoryDC;

// "kind:left,top,right,bottom" of the context's clip box.
std::string Clip(HDC dc) {
  RECT r{};
  const int kind = GetClipBox(dc, &r);
  char s[64];
  std::snprintf(s, sizeof s, "%d:%ld,%ld,%ld,%ld", kind, r.left, r.top, r.right, r.bottom);
  return s;
}

TEST(HGDIRegion, SelectAndRestoreClip) {
  MemoryDC m;  // on a 50x50 bitmap, unclipped
  HBITMAP bmp = CreateCompatibleBitmap(m.dc, 50, 50);
  HGDIOBJ oldBmp = SelectObject(m.dc, bmp);
  EXPECT_EQ("2:0,0,50,50", Clip(m.dc));
  HGDIRegion region(0, 0, 9, 9);  // inclusive edges
  region.Select(m.dc);
  EXPECT_EQ("2:0,0,10,10", Clip(m.dc));
  region.Restore();  // the context had no clip: the empty region
  EXPECT_EQ("1:0,0,0,0", Clip(m.dc));

  // A context with a clip gets that clip back.
  HRGN outer = CreateRectRgn(5, 5, 40, 30);
  SelectClipRgn(m.dc, outer);
  DeleteObject(outer);
  HGDIRegion inner(MyRect{20, 20, 24, 24});
  inner.Select(m.dc);
  EXPECT_EQ("2:20,20,25,25", Clip(m.dc));
  inner.Restore();
  EXPECT_EQ("2:5,5,40,30", Clip(m.dc));
  SelectObject(m.dc, oldBmp);
  DeleteObject(bmp);
}

}  // namespace
