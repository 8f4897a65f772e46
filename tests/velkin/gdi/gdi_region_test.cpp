// Clipping regions: the inclusive edges they are given, and the clip a
// selection sets and puts back.
#include "velkin/gdi/gdi_region.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <string>

#include "platform/ostrel/owned_handle.h"
#include "tests/velkin/draw/draw_pixels.h"

namespace {

// "kind:left,top,right,bottom" of the context's clip box.
std::string Clip(HDC dc) {
  RECT r{};
  const int kind = GetClipBox(dc, &r);
  char s[64];
  std::snprintf(s, sizeof s, "%d:%ld,%ld,%ld,%ld", kind, r.left, r.top, r.right, r.bottom);
  return s;
}

TEST(HGDIRegion, SelectAndRestoreClip) {
  const draw_pixels::Surface m(50, 50);  // unclipped
  EXPECT_EQ("2:0,0,50,50", Clip(m.Dc()));
  HGDIRegion region(0, 0, 9, 9);  // inclusive edges
  region.Select(m.Dc());
  EXPECT_EQ("2:0,0,10,10", Clip(m.Dc()));
  region.Restore();  // the context had no clip: the empty region
  EXPECT_EQ("1:0,0,0,0", Clip(m.Dc()));

  // A context with a clip gets that clip back.
  SelectClipRgn(m.Dc(), OwnedRegion(CreateRectRgn(5, 5, 40, 30)).get());
  HGDIRegion inner(MyRect{20, 20, 24, 24});
  inner.Select(m.Dc());
  EXPECT_EQ("2:20,20,25,25", Clip(m.Dc()));
  inner.Restore();
  EXPECT_EQ("2:5,5,40,30", Clip(m.Dc()));
}

}  // namespace
