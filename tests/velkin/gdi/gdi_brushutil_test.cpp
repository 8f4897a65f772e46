// Pattern-brush frames: every pixel of the frame inverted exactly once, also
// when the frame is thicker than half the rectangle, so painting it again
// restores the picture.
#include "velkin/gdi/gdi_brushutil.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "tests/velkin/draw/draw_pixels.h"

using namespace draw_pixels;

namespace {

TEST(GDIDrawBrushRect, EachFramePixelInvertedOnce) {
  const char* const white = "WWWWWWWW WWWWWWWW WWWWWWWW WWWWWWWW WWWWWWWW WWWWWWWW";
  const struct {
    const char* what;
    MyRect r;
    int width;
    bool sides;  // false: no brush for the left and right edges
    const char* picture;
  } rows[] = {
      {"inside, one pixel", {1, 1, 7, 5}, -1, true, "WWWWWWWW WKKKKKKW WKWWWWKW WKWWWWKW WKKKKKKW WWWWWWWW"},
      {"inside, thicker than half", {1, 1, 7, 5}, -3, true, "WWWWWWWW WKKKKKKW WKKKKKKW WKKKKKKW WKKKKKKW WWWWWWWW"},
      {"outside, two pixels", {3, 2, 5, 4}, 2, true, "WKKKKKKW WKKKKKKW WKKWWKKW WKKWWKKW WKKKKKKW WKKKKKKW"},
      {"zero width", {1, 1, 7, 5}, 0, true, white},
      {"no brush for the sides", {1, 1, 7, 5}, -1, false, "WWWWWWWW WKKKKKKW WWWWWWWW WWWWWWWW WKKKKKKW WWWWWWWW"},
  };
  HBRUSH invert = CreateSolidBrush(RGB(255, 255, 255));  // turns white black and back
  for (const auto& r : rows) {
    Surface s(8, 6, 0xFFFFFF);
    HBRUSH sides = r.sides ? invert : nullptr;
    GDIDrawBrushRect(s.Dc(), r.r, r.width, invert, sides);
    EXPECT_EQ(Rows(r.picture), Picture(s.Read(), 8, 6)) << r.what;
    GDIDrawBrushRect(s.Dc(), r.r, r.width, invert, sides);
    EXPECT_EQ(Rows(white), Picture(s.Read(), 8, 6)) << r.what << ", painted twice";
  }
  DeleteObject(invert);
}

}  // namespace
