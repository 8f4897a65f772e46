#include <gtest/gtest.h>

#include <vector>

#include "tests/velkin/draw/draw_pixels.h"
#include "velkin/draw/h_abrush.h"

using namespace draw_pixels;
using Graphics::TColor;

namespace {

// 8 x 8 patterns, 4 stages shifted by 2 rows: 14 table rows. Red tells the
// row, blue the column.
constexpr int kPw = 8, kPh = 8, kStages = 4, kRows = (kStages - 1) * (kPh / kStages) + kPh;
const std::vector<TColor> kTable = [] {
  std::vector<TColor> t(kPw * kRows);
  for (int r = 0; r < kRows; ++r)
    for (int x = 0; x < kPw; ++x) t[r * kPw + x] = TColor(0x10 * (r + 1) | (x << 16));
  return t;
}();
// The pixel table row r, column x gives on black.
uint32_t RowPixel(int r, int x) { return (static_cast<uint32_t>(0x10 * (r + 1)) << 16) | static_cast<uint32_t>(x); }

std::vector<HBRUSH> StageBrushes(HAniBrush& ab) {
  std::vector<HBRUSH> b;
  for (int i = 0; i < kStages; ++i) {
    ab.SetStage(i);
    b.push_back(ab.GetTopBrush());
  }
  return b;
}

TEST(HAniBrush, DrawingAgainRestoresEveryPixel) {
  Surface s(64, 48), ref(64, 48);  // the same noise in both
  s.FillNoise();
  ref.FillNoise();
  const Reader before = ref.Read();
  HAniBrush ab(true);
  ab.Assign(kTable.data(), kPw, kPh, kStages);
  ab.SetStage(3);  // hidden: stored only
  ab.DrawRect(MyRect{0, 0, 10, 10});
  ab.EndDrawRect();
  EXPECT_EQ(Diff(s.Read(), before, 64, 48), "") << "hidden frame drew";
  ab.StartDrawRect(s.Dc(), MyRect{50, 40, 10, 5}, 3);  // reversed: normalised
  EXPECT_EQ(ab.GetStage(), 0) << "StartDrawRect starts from stage 0";
  EXPECT_NE(Diff(s.Read(), before, 64, 48), "") << "the frame changed nothing";
  const Reader outsideTheBandKept = [&](int x, int y) {
    const bool band = x >= 10 && x < 50 && y >= 5 && y < 40 && (x < 13 || x >= 47 || y < 8 || y >= 37);
    return band ? s.At(x, y) : before(x, y);
  };
  EXPECT_EQ(Diff(s.Read(), outsideTheBandKept, 64, 48), "") << "only the 3-pixel band inside the rectangle";
  ab.DrawRect(MyRect{20, 10, 60, 30});
  ab.SetStage(3);
  ab.DrawRect(MyRect{0, 0, 64, 48});
  ab.SetStage(6);
  ab.EndDrawRect();
  EXPECT_EQ(Diff(s.Read(), before, 64, 48), "") << "moved, restaged and ended";
  // A restart erases the first frame; a frame thicker than half the
  // rectangle still inverts each pixel once.
  ab.StartDrawRect(s.Dc(), MyRect{2, 2, 20, 20}, 2);
  ab.StartDrawRect(s.Dc(), MyRect{5, 5, 10, 9}, 4);
  EXPECT_NE(s.At(7, 7), before(7, 7)) << "middle pixel inverted twice";
  ab.EndDrawRect();
  EXPECT_EQ(Diff(s.Read(), before, 64, 48), "") << "restarted and ended";
}

// Horizontal edges take the top brush, vertical ones the bottom brush, which
// two-tone frames index backwards.
TEST(HAniBrush, StagesShiftThePatternAndTwoToneRunsBackwards) {
  for (bool twoTone : {false, true}) {
    Surface s(32, 32);
    HAniBrush ab(twoTone);
    ab.Assign(kTable.data(), kPw, kPh, kStages);
    ab.StartDrawRect(s.Dc(), MyRect{0, 0, 32, 32}, 2);
    for (int stage : {0, 1, 2, 3, 5, -1}) {
      SCOPED_TRACE(testing::Message() << "two-tone " << twoTone << ", stage " << stage);
      ab.SetStage(stage);
      const int top = ((stage % kStages) + kStages) % kStages, side = twoTone ? kStages - 1 - top : top;
      EXPECT_EQ(s.At(5, 1), RowPixel(top * 2 + 1, 5)) << "top edge";
      EXPECT_EQ(s.At(1, 13), RowPixel(side * 2 + 5, 1)) << "left edge (pattern row 13 % 8)";
      EXPECT_EQ(s.At(20, 31), RowPixel(top * 2 + 7, 4)) << "bottom edge takes the top brush";
      EXPECT_EQ(s.At(16, 16), 0u) << "inside of the frame";
    }
    ab.EndDrawRect();
    EXPECT_EQ(s.At(5, 1), 0u);
  }
}

TEST(HAniBrush, EveryBrushIsDeletedOnce) {
  std::vector<HBRUSH> last;
  {
    HAniBrush ab(true);
    ab.Assign(kTable.data(), kPw, kPh, kStages);
    const std::vector<HBRUSH> destroyed = StageBrushes(ab);
    for (HBRUSH h : destroyed) EXPECT_EQ(GetObjectType(h), DWORD(OBJ_BRUSH));
    ab.Destroy();
    ab.Assign(kTable.data(), kPw, kPh, kStages);
    const std::vector<HBRUSH> replaced = StageBrushes(ab);
    ab.Assign(kTable.data(), kPw, kPh, kStages);
    last = StageBrushes(ab);
    for (auto [what, set] : {std::pair{"Destroy", destroyed}, std::pair{"a second Assign", replaced}})
      for (HBRUSH h : set) EXPECT_EQ(GetObjectType(h), 0u) << "brush " << h << " survived " << what;
  }
  for (HBRUSH h : last) EXPECT_EQ(GetObjectType(h), 0u) << "brush " << h << " survived the destructor";
}

}  // namespace
