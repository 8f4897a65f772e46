// The bitmap canvas: the smoothed copy.
#include "velkin/draw/gdi_canvas_bitmap.h"

#include <gtest/gtest.h>

#include "tests/velkin/draw/draw_pixels.h"

using namespace draw_pixels;
using namespace Graphics;

namespace {

TEST(HBitmapCanvas, AntiAliasedCopySmoothsTheClipArea) {
  HBitmapCanvas c;
  c.Resize(8, 4);
  c.Fill(MyRect{0, 0, 4, 4}, clBlack);
  c.Fill(MyRect{4, 0, 8, 4}, clWhite);
  Surface smooth(8, 4);
  c.SetAntiAlias(true);
  c.CopyTo(smooth.Dc());
  // The sample at x = 4 averages itself (white), the pixel two to its left
  // (black) and, away from the bottom line, the pixel two lines below (white).
  EXPECT_EQ(smooth.At(4, 0), 0xAAAAAAu);
  EXPECT_EQ(smooth.At(4, 3), 0x7F7F7Fu) << "the bottom line has no line below";
  EXPECT_EQ(smooth.At(5, 1), 0xFFFFFFu) << "pixels between samples are copied as drawn";
  EXPECT_EQ(smooth.At(1, 1), 0x000000u);
  EXPECT_EQ(Of(c)(4, 0), 0xFFFFFFu) << "the canvas itself is untouched";
}

}  // namespace
