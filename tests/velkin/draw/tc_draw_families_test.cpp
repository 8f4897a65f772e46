#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/velkin/draw/canvas_pixels.h"

using namespace canvas_pixels;
using namespace Graphics;
using Controls::alBottom;
using Controls::alClient;
using Controls::alLeft;
using Controls::alRight;
using Controls::alTop;

namespace {

// One call, written once for either canvas type.
struct Call {
  const char* what;
  std::function<void(TCanvas*)> framework;
  std::function<void(HCustomCanvas*)> own;
};

#define CALL(what, ...)                                                          \
  Call {                                                                         \
    what, [](TCanvas* c) { __VA_ARGS__; }, [](HCustomCanvas* c) { __VA_ARGS__; } \
  }

TEST(TcDrawFamilies, SameCallSamePixels) {
  static tagPOINT zigzag[] = {{2, 30}, {12, 22}, {20, 34}, {31, 21}, {39, 33}};
  static tagPOINT star[] = {{50, 20}, {56, 38}, {41, 27}, {59, 27}, {44, 38}};
  const std::vector<Call> calls = {
      CALL("lines", TC_Line(c, 1, 1, 30, 9, clRed); TC_Line(c, MyPoint{30, 1}, MyPoint{2, 18}, clBlue);
           TC_MoveTo(c, MyPoint{40, 2}); TC_LineTo(c, 58, 17, clDefault); TC_LineTo(c, MyPoint{40, 17}, clLime)),
      CALL("polyline and outlines", TC_LinePoly(c, zigzag, 5, clBlue); TC_Rect(c, MyRect{3, 3, 20, 15}, clRed);
           TC_Line(c, MyRect{25, 5, 45, 16}, clDefault)),
      CALL("ellipses", TC_Ellipse(c, MyRect{2, 2, 30, 20}, clRed); TC_Ellipse(c, MyRect{33, 4, 40, 30}, clDefault);
           TC_FillEllipse(c, MyRect{10, 22, 25, 36}, clBlue); TC_FillEllipse(c, MyRect{42, 22, 43, 23}, clLime)),
      CALL("polygons", TC_FillPoly(c, star, 5, clRed); TC_FillPoly(c, zigzag, 5, clDefault)),
      CALL("fills", TC_Fill(c, MyRect{2, 2, 20, 10}, clRed); TC_Fill(c, 22, 2, 40, 10, clDefault);
           TC_RoundFill(c, MyRect{2, 12, 30, 38}, 6, clBlue); TC_RoundFill(c, 32, 12, 58, 38, 0, clLime);
           TC_Fill(c, MyRect{10, 10, 5, 5}, clRed)),
      CALL("flat fills", TC_FlatFill(c, MyRect{0, 0, 60, 13}, TColor(0x4080C0), 1, false);
           TC_FlatFill(c, MyRect{0, 13, 60, 26}, TColor(0xFFFFFF), 3, true);
           TC_FlatFill(c, MyRect{0, 26, 30, 40}, clRed, 5, false);
           TC_FlatFill(c, MyRect{30, 26, 60, 40}, clBlue, -2, true)),
      CALL("figures", TC_LineShape(c, MyPoint{2, 5}, MyPoint{25, 5}, HFT_Arrow, 6, 30);
           TC_LineShape(c, MyPoint{2, 12}, MyPoint{25, 18}, HFT_FillArrow, 7, 25);
           TC_LineShape(c, MyPoint{30, 5}, MyPoint{50, 5}, HFT_Circle, 7, 45);
           TC_LineShape(c, MyPoint{30, 14}, MyPoint{50, 20}, HFT_FillCircle, 6, 45);
           TC_LineShape(c, MyPoint{2, 26}, MyPoint{20, 36}, HFT_Square, 5, 45);
           TC_LineShape(c, MyPoint{25, 36}, MyPoint{40, 26}, HFT_FillSquare, 4, 45);
           TC_LineShape(c, MyPoint{45, 36}, MyPoint{57, 28}, HFT_Bar, 8, 45);
           TC_LineShape(c, MyPoint{55, 2}, MyPoint{55, 2}, HFT_Arrow, 4, 45)),
      CALL("boxes", for (int t = 0; t < 15; ++t) TC_Box(c, MyRect{(t % 5) * 12, (t / 5) * 13, (t % 5) * 12 + 11,
                                                                  (t / 5) * 13 + 12},
                                                        clRed, HBOX_Types(t))),
      CALL("borders", for (int t = 0; t < 7; ++t) {
        const MyRect r{(t % 4) * 15, (t / 4) * 20, (t % 4) * 15 + 14, (t / 4) * 20 + 19};
        TC_Border(c, r, HBRD_Types(t), TC_Sides{alTop, alBottom, alLeft, alRight}, clBlue);
      } TC_Border(c, MyRect{45, 20, 60, 40}, alClient, HBRD_Raised, clNone)),
      CALL("colour boxes", TC_ColorBox(c, MyRect{2, 2, 20, 20}, clRed, clBlue);
           TC_ColorRect(c, MyRect{25, 2, 55, 30}, clLime, 3)),
  };
  for (const Call& k : calls) {
    BothSurfaces s(60, 40);
    k.framework(s.bmp.GetCanvas());
    k.own(&s.hc);
    EXPECT_EQ(Diff(s.Framework(), s.Own(), 60, 40), "") << k.what;
    EXPECT_NE(Diff(
                  s.Own(), [](int, int) { return 0xC0C0C0u; }, 60, 40),
              "")
        << k.what << " drew nothing";
  }
}

}  // namespace
