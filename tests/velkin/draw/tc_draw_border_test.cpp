#include <gtest/gtest.h>

#include "tests/velkin/draw/canvas_pixels.h"

using namespace canvas_pixels;
using namespace Graphics;
using Controls::alBottom;
using Controls::alClient;
using Controls::alLeft;
using Controls::alNone;
using Controls::alRight;
using Controls::alTop;

namespace {

TEST(TcDrawBorder, WidthsAndTheAreaInside) {
  const int border[] = {0, 2, 2, 2, 1, 4, 4, 0, 0, 0};
  for (int t = 0; t < 10; ++t) EXPECT_EQ(TC_BorderWidth(HBRD_Types(t)), border[t]) << "border type " << t;
  EXPECT_EQ(TC_BorderWidth(HBRD_Types(255)), 0);
  const int box[] = {1, 1, 2, 1, 4, 5, 2, 2, 0, 0, 1, 1, 4, 4, 0, 0};
  for (int t = 0; t < 16; ++t) EXPECT_EQ(TC_BoxWidth(HBOX_Types(t)), box[t]) << "box type " << t;
  EXPECT_EQ(TC_BoxWidth(HBOX_Types(200)), 0);

  MyRect r{10, 20, 110, 220};
  TC_CorrectBorderRect(r, TC_Sides{alTop, alBottom, alLeft, alRight}, HBRD_ColorWhite);
  EXPECT_EQ(r, (MyRect{14, 24, 106, 216}));
  r = MyRect{0, 0, 50, 50};
  TC_CorrectBorderRect(r, TC_Sides{alRight, alTop}, HBRD_Lowered);
  EXPECT_EQ(r, (MyRect{0, 2, 48, 50}));
  TC_CorrectBorderRect(r, TC_Sides{alLeft, alBottom}, HBRD_Types(9));
  EXPECT_EQ(r, (MyRect{0, 2, 48, 50})) << "no width, no change";
}

TEST(TcDrawBorder, SidesLinesAndTheirOrder) {
  // Sides from a set go top, bottom, left, right: the later sides own the corners.
  BothSurfaces all(10, 10);
  all.Run([](auto* c) {
    TC_Border(c, MyRect{0, 0, 10, 10}, HBRD_Lowered, TC_Sides{alTop, alBottom, alLeft, alRight}, clNone);
  });
  EXPECT_BOTH_PICTURE(all,
                      Picture({"GWGGGGGGWG", "GWWWWWWWWG", "GW......WG", "GW......WG", "GW......WG", "GW......WG",
                               "GW......WG", "GW......WG", "GWWWWWWWWG", "GWGGGGGGWG"}),
                      "sunken, four sides from a set");
  // alClient goes right, bottom, left, top: the top and left own them.
  BothSurfaces client(10, 10);
  client.Run([](auto* c) { TC_Border(c, MyRect{0, 0, 10, 10}, alClient, HBRD_Raised, clNone); });
  EXPECT_BOTH_PICTURE(client,
                      Picture({"WWWWWWWWWW", "GGGGGGGGGG", "WG......GW", "WG......GW", "WG......GW", "WG......GW",
                               "WG......GW", "WG......GW", "WGGGGGGGGG", "WGWWWWWWWW"}),
                      "raised, alClient");
  BothSurfaces single(10, 10);
  single.Run([](auto* c) { TC_Border(c, 0, 0, 10, 10, alClient, HBRD_Single, clRed); });
  EXPECT_BOTH_PICTURE(single,
                      Picture({"RRRRRRRRRR", "R........R", "R........R", "R........R", "R........R", "R........R",
                               "R........R", "R........R", "R........R", "RRRRRRRRRR"}),
                      "single, alClient: x = 9, y = 9, x = 0, y = 0");
  // Four-line styles keep their order on every side: bottom goes inside out.
  BothSurfaces four(6, 8);
  four.Run([](auto* c) {
    TC_Border(c, MyRect{0, 0, 6, 8}, alTop, HBRD_ColorWhite, clRed);
    TC_Border(c, MyRect{0, 0, 6, 8}, alBottom, HBRD_WhiteColor, clBlue);
  });
  EXPECT_BOTH_PICTURE(four, Picture({"RRRRRR", "WWWWWW", "RRRRRR", "WWWWWW", "WWWWWW", "BBBBBB", "WWWWWW", "BBBBBB"}),
                      "types 5 and 6");
  BothSurfaces twice(4, 4);
  twice.Run([](auto* c) { TC_Border(c, MyRect{0, 0, 4, 4}, alLeft, HBRD_Double, clBlue); });
  EXPECT_BOTH_PICTURE(twice, Picture({"BB..", "BB..", "BB..", "BB.."}), "double");
}

TEST(TcDrawBorder, NothingDrawnCases) {
  BothSurfaces s(6, 6);
  s.Run([](auto* c) {
    TC_Border(c, MyRect{0, 0, 6, 6}, alClient, HBRD_Single, clNone);
    TC_Border(c, MyRect{0, 0, 6, 6}, alClient, HBRD_Double, clNone);
    TC_Border(c, MyRect{0, 0, 6, 6}, alClient, HBRD_None, clRed);
    TC_Border(c, MyRect{0, 0, 6, 6}, alNone, HBRD_Single, clRed);
    TC_Border(c, MyRect{0, 0, 6, 6}, alClient, HBRD_Types(7), clRed);
    TC_Border(c, MyRect{0, 0, 6, 6}, HBRD_Single, TC_Sides{}, clRed);
    TC_Border(c, MyRect{0, 0, 6, 6}, Controls::alCustom, HBRD_Single, clRed);
  });
  const std::string blank = Picture({"......", "......", "......", "......", "......", "......"});
  EXPECT_BOTH_PICTURE(s, blank, "clNone for 3 and 4, type 0, alNone, type 7, no sides, alCustom");
  TC_Border(static_cast<TCanvas*>(nullptr), MyRect{0, 0, 6, 6}, alClient, HBRD_Single, clRed);
  TC_Border(static_cast<HCustomCanvas*>(nullptr), MyRect{0, 0, 6, 6}, alClient, HBRD_Single, clRed);
  // Types 5 and 6 do not test clNone: their white lines are drawn.
  BothSurfaces white(4, 4);
  white.Run([](auto* c) { TC_Border(c, MyRect{0, 0, 4, 4}, alTop, HBRD_ColorWhite, clNone); });
  EXPECT_BOTH_PICTURE(white, Picture({"....", "WWWW", "....", "WWWW"}), "type 5 with clNone");
}

TEST(TcDrawBorder, PenColourAndWidthComeBack) {
  BothSurfaces s(8, 8);
  s.bmp.GetCanvas()->GetPen()->SetWidth(3);
  s.bmp.GetCanvas()->GetPen()->SetColor(clBlue);
  s.hc.GetPen()->SetWidth(3);
  s.hc.GetPen()->SetColor(clBlue);
  s.Run([](auto* c) {
    TC_Border(c, MyRect{0, 0, 8, 8}, alTop, HBRD_Single, clRed);
    TC_Box(c, MyRect{0, 2, 8, 8}, clLime, HBOX_Black);
  });
  EXPECT_EQ(s.bmp.GetCanvas()->GetPen()->GetWidth(), 3);
  EXPECT_EQ(s.bmp.GetCanvas()->GetPen()->GetColor(), clBlue);
  EXPECT_EQ(s.hc.GetPen()->GetWidth(), 3);
  EXPECT_EQ(s.hc.GetPen()->GetColor(), clBlue);
  // ... and the lines were one pixel wide all the same.
  EXPECT_BOTH_PICTURE(
      s, Picture({"RRRRRRRR", "........", "KKKKKKKK", "KLLLLLLK", "KLLLLLLK", "KLLLLLLK", "KLLLLLLK", "KKKKKKKK"}),
      "border and box with a wide pen");
}

}  // namespace
