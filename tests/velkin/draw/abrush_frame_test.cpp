#include <gtest/gtest.h>

#include <windows.h>

#include <cstdint>
#include <vector>

#include "tests/velkin/draw/extdraw_dib.h"
#include "velkin/draw/h_abrush.h"
#include "velkin/gdi/gdi_brushutil.h"

using Graphics::TColor;
using testdib::Dib;

namespace {

// 8 x 8 patterns, 4 stages shifted by 2 rows: the table has 14 rows, row r
// coloured so that the row can be told from the pixel. TColor is 0x00BBGGRR.
constexpr int kPw = 8, kPh = 8, kStages = 4, kRows = (kStages - 1) * (kPh / kStages) + kPh;
std::vector<TColor> RowTable() {
  std::vector<TColor> t(kPw * kRows);
  for (int r = 0; r < kRows; ++r)
    for (int x = 0; x < kPw; ++x) t[r * kPw + x] = TColor(0x10 * (r + 1) | (x << 16));  // red = row, blue = column
  return t;
}
// The DIB pixel (0x00RRGGBB) that table row r, column x gives on black.
uint32_t RowPixel(int r, int x) { return (static_cast<uint32_t>(0x10 * (r + 1)) << 16) | static_cast<uint32_t>(x); }

TEST(HAniBrushFrame, DrawingAgainRestoresEveryPixel) {
  Dib dib(64, 48);
  dib.FillNoise();
  const std::vector<uint32_t> before = dib.Snapshot();
  const std::vector<TColor> table = RowTable();
  HAniBrush ab(true);
  ab.Assign(table.data(), kPw, kPh, kStages);
  ASSERT_TRUE(ab.GetInited());

  ab.StartDrawRect(dib.dc(), MyRect{50, 40, 10, 5}, 3);  // given reversed: normalised
  EXPECT_TRUE(ab.GetMoving());
  EXPECT_EQ(ab.GetFrameRect(), (MyRect{10, 5, 50, 40}));
  EXPECT_NE(dib.FirstDifference(before), -1) << "the frame changed nothing";
  // Only the 3-pixel band inside the rectangle changed.
  for (int y = 0; y < 48; ++y)
    for (int x = 0; x < 64; ++x) {
      const bool inRect = x >= 10 && x < 50 && y >= 5 && y < 40;
      const bool inBand = inRect && (x < 13 || x >= 47 || y < 8 || y >= 37);
      const bool changed = dib.At(x, y) != (before[y * 64 + x] & 0xFFFFFF);
      if (!inBand) {
        ASSERT_FALSE(changed) << "pixel (" << x << "," << y << ") outside the frame changed";
      }
    }

  ab.DrawRect(MyRect{20, 10, 60, 30});
  ab.SetStage(3);
  ab.DrawRect(MyRect{0, 0, 64, 48});
  ab.SetStage(6);
  ab.EndDrawRect();
  EXPECT_FALSE(ab.GetMoving());
  const int diff = dib.FirstDifference(before);
  EXPECT_EQ(diff, -1) << "pixel (" << diff % 64 << "," << diff / 64 << ") not restored: 0x" << std::hex
                      << dib.At(diff < 0 ? 0 : diff % 64, diff < 0 ? 0 : diff / 64) << " expected 0x"
                      << (before[diff < 0 ? 0 : diff] & 0xFFFFFF);

  // A frame thicker than half the rectangle still inverts each pixel once.
  ab.StartDrawRect(dib.dc(), MyRect{5, 5, 10, 9}, 4);
  EXPECT_NE(dib.At(7, 7), before[7 * 64 + 7] & 0xFFFFFF) << "middle pixel inverted twice";
  ab.EndDrawRect();
  EXPECT_EQ(dib.FirstDifference(before), -1);
}

TEST(HAniBrushFrame, StagesShiftThePatternAndTwoToneRunsBackwards) {
  const std::vector<TColor> table = RowTable();
  for (bool twoTone : {false, true}) {
    SCOPED_TRACE(twoTone ? "two-tone" : "one tone");
    Dib dib(32, 32);  // black
    HAniBrush ab(twoTone);
    ab.Assign(table.data(), kPw, kPh, kStages);
    ab.StartDrawRect(dib.dc(), MyRect{0, 0, 32, 32}, 2);
    for (int stage : {0, 1, 2, 3, 5, -1}) {
      ab.SetStage(stage);
      const int top = ((stage % kStages) + kStages) % kStages;
      const int side = twoTone ? kStages - 1 - top : top;
      // Top edge row 1, column 5: table row (start of stage) + 1.
      EXPECT_EQ(dib.At(5, 1), RowPixel(top * 2 + 1, 5)) << "stage " << stage << " top edge";
      // Left edge at (1, 13): pattern row 13 % 8 = 5, column 1.
      EXPECT_EQ(dib.At(1, 13), RowPixel(side * 2 + 5, 1)) << "stage " << stage << " left edge";
      // Bottom edge row 31 (pattern row 7) takes the top brush.
      EXPECT_EQ(dib.At(20, 31), RowPixel(top * 2 + 7, 4)) << "stage " << stage << " bottom edge";
      EXPECT_EQ(dib.At(16, 16), 0u) << "inside of the frame";
    }
    ab.EndDrawRect();
    EXPECT_EQ(dib.At(5, 1), 0u);
  }
}

TEST(HAniBrushFrame, BrushIndexesByStage) {
  const std::vector<TColor> table = RowTable();
  HAniBrush ab(true);
  EXPECT_EQ(ab.GetTopBrush(), nullptr);
  EXPECT_EQ(ab.GetBottomBrush(), nullptr);
  ab.Assign(table.data(), kPw, kPh, kStages);
  HBRUSH b[kStages];
  for (int i = 0; i < kStages; ++i) {
    ab.SetStage(i);
    b[i] = ab.GetTopBrush();
    ASSERT_NE(b[i], nullptr);
    for (int j = 0; j < i; ++j) EXPECT_NE(b[i], b[j]) << "stages " << i << " and " << j << " share a brush";
  }
  ab.SetStage(5);
  EXPECT_EQ(ab.GetTopBrush(), b[1]);
  EXPECT_EQ(ab.GetBottomBrush(), b[2]);
  ab.SetStage(0);
  EXPECT_EQ(ab.GetBottomBrush(), b[3]);
  ab.SetStage(-2);
  EXPECT_EQ(ab.GetTopBrush(), b[2]);
  EXPECT_EQ(ab.GetBottomBrush(), b[1]);

  HAniBrush one(false);
  one.Assign(table.data(), kPw, kPh, kStages);
  one.SetStage(7);
  EXPECT_EQ(one.GetBottomBrush(), one.GetTopBrush());

  // Own table per stage: stage i shows table i.
  std::vector<TColor> t0(64, TColor(0x0000FF)), t1(64, TColor(0x00FF00));
  const TColor* tables[2] = {t0.data(), t1.data()};
  HAniBrush own(false);
  own.Assign(tables, 8, 8, 2);
  Dib dib(16, 16);
  own.StartDrawRect(dib.dc(), MyRect{0, 0, 16, 16}, 1);
  EXPECT_EQ(dib.At(3, 0), 0xFF0000u);  // red in DIB byte order
  own.SetStage(1);
  EXPECT_EQ(dib.At(3, 0), 0x00FF00u);
  own.EndDrawRect();
}

TEST(HAniBrushFrame, HiddenFrameAndUninitialisedObjectDrawNothing) {
  Dib dib(32, 32);
  dib.FillNoise();
  const std::vector<uint32_t> before = dib.Snapshot();
  const std::vector<TColor> table = RowTable();

  HAniBrush empty(false);
  empty.StartDrawRect(dib.dc(), MyRect{0, 0, 20, 20}, 2);
  empty.DrawRect(MyRect{5, 5, 25, 25});
  empty.SetStage(2);
  empty.EndDrawRect();
  EXPECT_FALSE(empty.GetMoving());
  EXPECT_EQ(dib.FirstDifference(before), -1) << "uninitialised brush drew";

  HAniBrush ab(false);
  ab.Assign(table.data(), kPw, kPh, kStages);
  ab.SetStage(3);  // hidden: stored only
  EXPECT_EQ(ab.GetStage(), 3);
  ab.DrawRect(MyRect{0, 0, 10, 10});  // not moving: nothing
  ab.EndDrawRect();
  EXPECT_EQ(dib.FirstDifference(before), -1) << "hidden frame drew";
  EXPECT_FALSE(ab.GetMoving());

  ab.StartDrawRect(dib.dc(), MyRect{2, 2, 20, 20}, 2);
  EXPECT_EQ(ab.GetStage(), 0) << "StartDrawRect starts from stage 0";
  // Starting again while shown erases the first frame.
  ab.StartDrawRect(dib.dc(), MyRect{8, 8, 30, 30}, 1);
  ab.EndDrawRect();
  EXPECT_EQ(dib.FirstDifference(before), -1) << "restart left a frame behind";
}

TEST(HAniBrushFrame, DestroyDeletesEveryBrush) {
  const std::vector<TColor> table = RowTable();
  std::vector<HBRUSH> seen;
  {
    HAniBrush ab(true);
    ab.Assign(table.data(), kPw, kPh, kStages);
    for (int i = 0; i < kStages; ++i) {
      ab.SetStage(i);
      seen.push_back(ab.GetTopBrush());
      EXPECT_EQ(GetObjectType(seen.back()), static_cast<DWORD>(OBJ_BRUSH));
    }
    ab.Destroy();
    EXPECT_FALSE(ab.GetInited());
    for (HBRUSH h : seen) EXPECT_EQ(GetObjectType(h), 0u) << "brush " << h << " survived Destroy";
    // Assign again replaces the set; the destructor deletes it.
    seen.clear();
    ab.Assign(table.data(), kPw, kPh, kStages);
    std::vector<HBRUSH> first;
    for (int i = 0; i < kStages; ++i) {
      ab.SetStage(i);
      first.push_back(ab.GetTopBrush());
    }
    ab.Assign(table.data(), kPw, kPh, kStages);
    for (HBRUSH h : first) EXPECT_EQ(GetObjectType(h), 0u) << "brush " << h << " survived a second Assign";
    for (int i = 0; i < kStages; ++i) {
      ab.SetStage(i);
      seen.push_back(ab.GetTopBrush());
    }
  }
  for (HBRUSH h : seen) EXPECT_EQ(GetObjectType(h), 0u) << "brush " << h << " survived the destructor";
}

TEST(HAniBrushFrame, BrushUtilEdgeCases) {
  EXPECT_EQ(GDICreateBrush(nullptr, 8, 8), nullptr);
  const TColor c[4] = {Graphics::clRed, Graphics::clRed, Graphics::clRed, Graphics::clRed};
  EXPECT_EQ(GDICreateBrush(c, 0, 2), nullptr);
  EXPECT_EQ(GDICreateBrush(c, 2, -1), nullptr);
  // Outward frame: a positive width paints round the rectangle, not in it.
  Dib dib(20, 20);
  HBRUSH red = GDICreateBrush(c, 2, 2);
  ASSERT_NE(red, nullptr);
  GDIDrawBrushRect(dib.dc(), MyRect{5, 5, 15, 15}, 2, red, red);
  EXPECT_EQ(dib.At(3, 3), 0xFF0000u) << "outer corner";
  EXPECT_EQ(dib.At(16, 10), 0xFF0000u) << "right edge";
  EXPECT_EQ(dib.At(5, 5), 0u) << "rectangle itself";
  EXPECT_EQ(dib.At(2, 2), 0u) << "beyond the frame";
  // A null brush leaves its edges alone.
  GDIDrawBrushRect(dib.dc(), MyRect{5, 5, 15, 15}, 2, red, nullptr);
  EXPECT_EQ(dib.At(3, 3), 0u) << "top band erased";
  EXPECT_EQ(dib.At(16, 10), 0xFF0000u) << "side band kept";
  DeleteObject(red);
}

}  // namespace
