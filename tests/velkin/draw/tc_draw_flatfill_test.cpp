#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "tests/velkin/draw/canvas_pixels.h"

using namespace canvas_pixels;
using namespace Graphics;

namespace {

// Expected strip colours (0xRRGGBB) worked out by hand from the shade
// formula, strip by strip from the edge to the middle.
struct FlatCase {
  const char* what;
  TColor color;
  int shade;
  bool vertical;
  int size;  // across the shading
  std::vector<uint32_t> strips;
};

TEST(TcDrawFlatFill, StripColoursFromEdgeToMiddle) {
  const FlatCase cases[] = {
      // Edges at cos(pi/6); the middle at factor 1: x + 0.5 rounds to even.
      {"shade 1", TColor(0x4080C0), 1, false, 10, {0xA76F38, 0xB0753B, 0xB77A3D, 0xBC7E3F, 0xBF8040, 0xC08040}},
      // Black edges; a full 255 at factor 1 wraps to 0 in the middle.
      {"shade 5, white", clWhite, 5, false, 10, {0x000000, 0x4F4F4F, 0x969696, 0xCFCFCF, 0xF3F3F3, 0x000000}},
      {"shade 3, vertical, odd size", TColor(0x0081FF), 3, true, 7, {0xB55C00, 0xDD7000, 0xF77D00, 0x008200}},
      {"negative shade is shallower", clBlue, -2, false, 6, {0x0000F0, 0x0000F9, 0x0000FE, 0x000000}},
  };
  for (const FlatCase& k : cases) {
    const int w = k.vertical ? 3 : k.size, h = k.vertical ? k.size : 3;
    BothSurfaces s(w, h);
    s.Run([&](auto* c) { TC_FlatFill(c, MyRect{0, 0, w, h}, k.color, k.shade, k.vertical); });
    // Strip i and its mirror; the last strip overlaps the middle and wins.
    const int half = k.size / 2;
    for (int p = 0; p < k.size; ++p) {
      int i = std::min(p, k.size - 1 - p);
      if (k.size % 2 == 0 && (p == half - 1 || p == half)) i = half;
      const uint32_t expected = k.strips[i];
      const int x = k.vertical ? 1 : p, y = k.vertical ? p : 1;
      EXPECT_EQ(s.Framework()(x, y), expected) << k.what << ", strip at " << p << ", TCanvas";
      EXPECT_EQ(s.Own()(x, y), expected) << k.what << ", strip at " << p << ", HCustomCanvas";
    }
  }
}

TEST(TcDrawFlatFill, PlainFillWhenThereIsNothingToShade) {
  const struct {
    const char* what;
    int shade;
    MyRect r;
    bool vertical;
  } cases[] = {{"shade 0", 0, {0, 0, 8, 4}, false},
               {"shade 6", 6, {0, 0, 8, 4}, false},
               {"shade 9", 9, {0, 0, 8, 4}, true},
               {"one pixel across", 3, {0, 0, 1, 4}, false},
               {"one pixel high, vertical", 3, {0, 0, 8, 1}, true}};
  for (const auto& k : cases) {
    BothSurfaces s(8, 4);
    s.Run([&](auto* c) { TC_FlatFill(c, k.r, clRed, k.shade, k.vertical); });
    for (int y = 0; y < k.r.bottom; ++y)
      for (int x = 0; x < k.r.right; ++x) {
        EXPECT_EQ(s.Framework()(x, y), 0xFF0000u) << k.what << " at " << x << "," << y;
        EXPECT_EQ(s.Own()(x, y), 0xFF0000u) << k.what << " at " << x << "," << y;
      }
  }
  BothSurfaces none(4, 4);
  none.Run([](auto* c) { TC_FlatFill(c, MyRect{0, 0, 4, 4}, clNone, 2, false); });
  EXPECT_BOTH_PICTURE(none, Picture({"....", "....", "....", "...."}), "clNone");
}

TEST(TcDrawFlatFill, ShadeTableIsCachedPerRequest) {
  const double* t = nullptr;
  EXPECT_EQ(TC_FlatShadeTable(3, 20, &t), 20);
  ASSERT_NE(t, nullptr);
  EXPECT_NEAR(t[0], std::sqrt(0.5), 1e-12) << "edge factor cos(pi/4)";
  EXPECT_DOUBLE_EQ(t[20], 1.0);
  EXPECT_NEAR(t[10], std::sin(3 * std::numbers::pi / 8), 1e-12);
  // At most 49 steps, however wide.
  EXPECT_EQ(TC_FlatShadeTable(1, 300, &t), 49);
  EXPECT_NEAR(t[0], std::cos(std::numbers::pi / 6), 1e-12);
  EXPECT_DOUBLE_EQ(t[49], 1.0);
  // A new shade with the same count rebuilds.
  EXPECT_EQ(TC_FlatShadeTable(4, 49, &t), 49);
  EXPECT_NEAR(t[0], std::cos(std::numbers::pi / 3), 1e-12);
}

TEST(TcDrawFlatFill, FrameworkFormPaintsWithTheBrush) {
  TBitmap bmp;
  bmp.SetSize(6, 2);
  TCanvas* c = bmp.GetCanvas();
  c->GetBrush()->SetStyle(bsSolid);
  TC_FlatFill(c, MyRect{0, 0, 6, 2}, clBlue, -2, false);
  // The brush keeps the colour of the last strip, the middle one.
  EXPECT_EQ(c->GetBrush()->GetColor(), TColor(0x000000)) << "0xFF at factor 1 wraps";
  HBitmapCanvas h;
  h.Resize(6, 2);
  TC_FlatFill(&h, MyRect{0, 0, 6, 2}, clBlue, -2, false);
  EXPECT_EQ(h.GetBrush()->GetColor(), clWhite) << "the canvas's own fill leaves its brush alone";
}

}  // namespace
