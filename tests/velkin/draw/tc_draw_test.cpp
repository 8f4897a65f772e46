// The drawing routines on both canvas families: borders, boxes, frames and
// shaded fills as pictures, and the other routines pixel for pixel alike.
#include <gtest/gtest.h>

#include <vector>

#include "tests/velkin/draw/draw_pixels.h"

using namespace draw_pixels;
using namespace Graphics;
using namespace Controls;

namespace {

TEST(TcDrawBorder, SidesLinesAndTheirOrder) {
  // Sides from a set go top, bottom, left, right: the later sides own the
  // corners (sunken, left). alClient goes right, bottom, left, top: the top
  // and left own them (raised, right). Below: single and double.
  ExpectPicture(12, 11,
                "GWGGWGWWWWWW GWWWWGGGGGGG GW..WGWG..GW GW..WGWG..GW GWWWWGWGGGGG GWGGWGWGWWWW RRRRR.BB.... "
                "R...R.BB.... R...R....... R...R....... RRRRR.......",
                "sunken set, raised alClient, single, double", [](auto* c) {
                  TC_Border(c, MyRect{0, 0, 6, 6}, HBRD_Lowered, TC_Sides{alTop, alBottom, alLeft, alRight}, clNone);
                  TC_Border(c, MyRect{6, 0, 12, 6}, alClient, HBRD_Raised, clNone);
                  TC_Border(c, 0, 6, 5, 11, alClient, HBRD_Single, clRed);
                  TC_Border(c, MyRect{6, 6, 10, 8}, alLeft, HBRD_Double, clBlue);
                });
  // Four-line styles keep their order on every side: bottom goes inside out;
  // they do not test clNone, their white lines are drawn.
  ExpectPicture(6, 12, "RRRRRR WWWWWW RRRRRR WWWWWW WWWWWW BBBBBB WWWWWW BBBBBB ...... WWWWWW ...... WWWWWW",
                "types 5 and 6", [](auto* c) {
                  TC_Border(c, MyRect{0, 0, 6, 8}, alTop, HBRD_ColorWhite, clRed);
                  TC_Border(c, MyRect{0, 0, 6, 8}, alBottom, HBRD_WhiteColor, clBlue);
                  TC_Border(c, MyRect{0, 8, 6, 12}, alTop, HBRD_ColorWhite, clNone);
                });
  ExpectPicture(6, 6, "...... ...... ...... ...... ...... ......",
                "clNone for 3 and 4, type 0, alNone, type 7, no sides", [](auto* c) {
                  TC_Border(c, MyRect{0, 0, 6, 6}, alClient, HBRD_Single, clNone);
                  TC_Border(c, MyRect{0, 0, 6, 6}, alClient, HBRD_Double, clNone);
                  TC_Border(c, MyRect{0, 0, 6, 6}, alClient, HBRD_None, clRed);
                  TC_Border(c, MyRect{0, 0, 6, 6}, alNone, HBRD_Single, clRed);
                  TC_Border(c, MyRect{0, 0, 6, 6}, alClient, HBRD_Types(7), clRed);
                  TC_Border(c, MyRect{0, 0, 6, 6}, HBRD_Single, TC_Sides{}, clRed);
                });
}

TEST(TcDrawBox, EveryStyleFramesAndFills) {
  const struct {
    HBOX_Types type;
    int size;
    const char* expected;
  } cases[] = {
      {HBOX_Raised, 6, "WWWWWG WRRRRG WRRRRG WRRRRG WRRRRG WGGGGG"},
      {HBOX_Lowered, 6, "GGGGGW GRRRRW GRRRRW GRRRRW GRRRRW GWWWWW"},
      {HBOX_Etched, 8, "WWWWWWW. WKKKKKWK WKRRRRWK WKRRRRWK WKRRRRWK WKRRRRWK WWWWWWWK .KKKKKKK"},
      {HBOX_Black, 5, "KKKKK KRRRK KRRRK KRRRK KKKKK"},
      {HBOX_Thick, 10,
       "KKKKKKKKKK KWWWWWWWGK KWWWWWWGGK KWWKKKKGGK KWWKRRKGGK KWWKRRKGGK KWWKKKKGGK KWWGGGGGGK KWGGGGGGGK KKKKKKKKKK"},
      {HBOX_Thicker, 12,
       "KKKKKKKKKKKK KWWWWWWWWWGK KWWWWWWWWGGK KWWWWWWWGGGK KWWWKKKKGGGK KWWWKRRKGGGK KWWWKRRKGGGK KWWWKKKKGGGK "
       "KWWWGGGGGGGK KWWGGGGGGGGK KWGGGGGGGGGK KKKKKKKKKKKK"},
      {HBOX_Button, 7, "KKKKKKK KWWWWGK KWRRRGK KWRRRGK KWRRRGK KWGGGGK KKKKKKK"},
      {HBOX_Pushed, 7, "KKKKKKK KGGGGWK KGRRRWK KGRRRWK KGRRRWK KGWWWWK KKKKKKK"},
      {HBOX_Fill, 3, "RRR RRR RRR"},
      {HBOX_Nothing, 3, "... ... ..."},
      {HBOX_Outline, 4, "RRRR R..R R..R RRRR"},
      {HBOX_Outline2, 4, "RRRR R..R R..R RRRR"},
      {HBOX_GroupLowered, 10,
       "GGGGGGGGGG GWWWWWWWWG GWGGGGGGWG GWGWWWWGWG GWGWRRWGWG GWGWRRWGWG GWGWWWWGWG GWGGGGGGWG GWWWWWWWWG GGGGGGGGGG"},
      {HBOX_GroupRaised, 9,
       "WWWWWWWWW WGGGGGGGW WGWWWWWGW WGWGGGWGW WGWGRGWGW WGWGGGWGW WGWWWWWGW WGGGGGGGW WWWWWWWWW"},
      {HBOX_Types(14), 3, "RRR RRR RRR"},
  };
  for (const auto& k : cases)
    ExpectPicture(k.size, k.size, k.expected, "box type " + std::to_string(k.type), [&](auto* c) {
      TC_Box(c, MyRect{0, 0, k.size, k.size}, clRed, k.type);
    });
  // clDefault fills with the brush colour, clNone draws nothing.
  ExpectPicture(5, 5, "KKKKK KBBBK KBBBK KBBBK KKKKK", "clDefault and clNone", [](auto* c) {
    c->GetBrush()->SetColor(clBlue);
    TC_Box(c, MyRect{0, 0, 5, 5}, clDefault, HBOX_Black);
    TC_Box(c, MyRect{0, 0, 3, 3}, clNone, HBOX_Outline);
    TC_Box(c, MyRect{1, 1, 4, 4}, clNone, HBOX_Fill);
  });
  // The routines draw one-pixel lines whatever the pen, and leave it as it was.
  ExpectPicture(8, 8, "RRRRRRRR ........ KKKKKKKK KLLLLLLK KLLLLLLK KLLLLLLK KLLLLLLK KKKKKKKK",
                "border and box with a wide pen", [](auto* c) {
                  c->GetPen()->SetWidth(3);
                  c->GetPen()->SetColor(clBlue);
                  TC_Border(c, MyRect{0, 0, 8, 8}, alTop, HBRD_Single, clRed);
                  TC_Box(c, MyRect{0, 2, 8, 8}, clLime, HBOX_Black);
                  EXPECT_EQ(c->GetPen()->GetWidth(), 3);
                  EXPECT_EQ(c->GetPen()->GetColor(), clBlue);
                });
}

TEST(TcDrawColorRect, FrameThickerThanHalfFillsTheRectangleAndNoMore) {
  const struct {
    const char* what;
    int width;
    const char* picture;
  } rows[] = {
      {"one pixel", 1, "........ .RRRRRR. .R....R. .RRRRRR. ........"},
      {"as thick as half the height", 2, "........ .RRRRRR. .RRRRRR. .RRRRRR. ........"},
      {"far thicker than the rectangle", 40, "........ .RRRRRR. .RRRRRR. .RRRRRR. ........"},
      {"no width", 0, "........ ........ ........ ........ ........"},
  };
  for (const auto& r : rows)
    ExpectPicture(8, 5, r.picture, r.what, [&](auto* c) { TC_ColorRect(c, MyRect{1, 1, 7, 4}, clRed, r.width); });
}

// The same call on either family draws the same pixels, and draws something.
tagPOINT zigzag[] = {{2, 30}, {12, 22}, {20, 34}, {31, 21}, {39, 33}};
tagPOINT star[] = {{50, 20}, {56, 38}, {41, 27}, {59, 27}, {44, 38}};

template <class Draw>
void ExpectSame(const char* what, Draw draw) {
  BothSurfaces s(60, 40);
  s.Run(draw);
  EXPECT_EQ(Diff(s.Framework(), s.Own(), 60, 40), "") << what;
  EXPECT_NE(Diff(s.Own(), Plain(0xC0C0C0), 60, 40), "") << what << " drew nothing";
}

TEST(TcDrawFamilies, SameCallSamePixels) {
  ExpectSame("lines", [](auto* c) {
    TC_Line(c, 1, 1, 30, 9, clRed);
    TC_Line(c, MyPoint{30, 1}, MyPoint{2, 18}, clBlue);
    TC_MoveTo(c, MyPoint{40, 2});
    TC_LineTo(c, 58, 17, clDefault);
    TC_LineTo(c, MyPoint{40, 17}, clLime);
    TC_LinePoly(c, zigzag, 5, clBlue);
  });
  ExpectSame("ellipses and polygons", [](auto* c) {
    TC_Ellipse(c, MyRect{2, 2, 30, 20}, clRed);
    TC_Ellipse(c, MyRect{33, 4, 40, 30}, clDefault);
    TC_FillEllipse(c, MyRect{10, 22, 25, 36}, clBlue);
    TC_FillEllipse(c, MyRect{42, 22, 43, 23}, clLime);
    TC_FillPoly(c, star, 5, clRed);
    TC_FillPoly(c, zigzag, 5, clDefault);
  });
  ExpectSame("fills", [](auto* c) {
    TC_Fill(c, MyRect{2, 2, 20, 10}, clRed);
    TC_Fill(c, 22, 2, 40, 10, clDefault);
    TC_RoundFill(c, MyRect{2, 12, 30, 38}, 6, clBlue);
    TC_RoundFill(c, 32, 12, 58, 38, 0, clLime);
    TC_Fill(c, MyRect{10, 10, 5, 5}, clRed);
  });
  ExpectSame("figures", [](auto* c) {
    TC_LineShape(c, MyPoint{2, 5}, MyPoint{25, 5}, HFT_Arrow, 6, 30);
    TC_LineShape(c, MyPoint{2, 12}, MyPoint{25, 18}, HFT_FillArrow, 7, 25);
    TC_LineShape(c, MyPoint{30, 5}, MyPoint{50, 5}, HFT_Circle, 7, 45);
    TC_LineShape(c, MyPoint{30, 14}, MyPoint{50, 20}, HFT_FillCircle, 6, 45);
    TC_LineShape(c, MyPoint{2, 26}, MyPoint{20, 36}, HFT_Square, 5, 45);
    TC_LineShape(c, MyPoint{25, 36}, MyPoint{40, 26}, HFT_FillSquare, 4, 45);
    TC_LineShape(c, MyPoint{45, 36}, MyPoint{57, 28}, HFT_Bar, 8, 45);
    TC_LineShape(c, MyPoint{55, 2}, MyPoint{55, 2}, HFT_Arrow, 4, 45);
  });
}

TEST(TcDrawFlatFill, StripColoursFromEdgeToMiddle) {
  // Strip colours worked out by hand from the shade formula, cos(pi / (shade
  // + 3)) at the edge rising to 1, from the edge to the middle; nothing to
  // shade gives a plain fill.
  constexpr uint32_t R = 0xFF0000;
  const struct {
    const char* what;
    TColor color;
    int shade;
    bool vertical;
    int size;  // across the shading
    std::vector<uint32_t> strips;
  } cases[] = {
      // Edges at cos(pi/6); the middle at factor 1: x + 0.5 rounds to even.
      {"shade 1", TColor(0x4080C0), 1, false, 10, {0xA76F38, 0xB0753B, 0xB77A3D, 0xBC7E3F, 0xBF8040, 0xC08040}},
      // Black edges; a full 255 at factor 1 wraps to 0 in the middle.
      {"shade 5, white", clWhite, 5, false, 10, {0x000000, 0x4F4F4F, 0x969696, 0xCFCFCF, 0xF3F3F3, 0x000000}},
      {"shade 3, vertical, odd size", TColor(0x0081FF), 3, true, 7, {0xB55C00, 0xDD7000, 0xF77D00, 0x008200}},
      {"negative shade is shallower", clBlue, -2, false, 6, {0x0000F0, 0x0000F9, 0x0000FE, 0x000000}},
      {"shade 0", clRed, 0, false, 8, {R, R, R, R, R}},
      {"shade 6", clRed, 6, false, 8, {R, R, R, R, R}},
      {"one pixel across", clRed, 3, false, 1, {R}},
      {"one pixel across, vertical", clRed, 3, true, 1, {R}},
      {"clNone", clNone, 2, false, 4, {0xC0C0C0, 0xC0C0C0, 0xC0C0C0}},
  };
  for (const auto& k : cases) {
    const int w = k.vertical ? 5 : k.size, h = k.vertical ? k.size : 5;
    BothSurfaces s(w, h);
    s.Run([&](auto* c) { TC_FlatFill(c, MyRect{0, 0, w, h}, k.color, k.shade, k.vertical); });
    // Strip i and its mirror; the last strip overlaps the middle and wins.
    const Reader expected = [&](int x, int y) {
      const int p = k.vertical ? y : x, half = k.size / 2;
      const bool middle = k.size % 2 == 0 && (p == half - 1 || p == half);
      return k.strips[middle ? half : std::min(p, k.size - 1 - p)];
    };
    EXPECT_EQ(Diff(s.Framework(), expected, w, h), "") << k.what << ", TCanvas";
    EXPECT_EQ(Diff(s.Own(), expected, w, h), "") << k.what << ", HCustomCanvas";
  }
  // However wide the fill, at most 49 strips from the edge to the middle.
  const double* t = nullptr;
  EXPECT_EQ(TC_FlatShadeTable(1, 300, &t), 49);
  EXPECT_DOUBLE_EQ(t[49], 1.0);
}

}  // namespace
