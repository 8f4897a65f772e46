#include <gtest/gtest.h>

#include "tests/velkin/draw/canvas_pixels.h"

using namespace canvas_pixels;
using namespace Graphics;

namespace {

struct BoxCase {
  HBOX_Types type;
  int size;
  std::string expected;
};

TEST(TcDrawBox, EveryStyleFramesAndFills) {
  const BoxCase cases[] = {
      {HBOX_Raised, 6, Picture({"WWWWWG", "WRRRRG", "WRRRRG", "WRRRRG", "WRRRRG", "WGGGGG"})},
      {HBOX_Lowered, 6, Picture({"GGGGGW", "GRRRRW", "GRRRRW", "GRRRRW", "GRRRRW", "GWWWWW"})},
      {HBOX_Etched, 8,
       Picture({"WWWWWWW.", "WKKKKKWK", "WKRRRRWK", "WKRRRRWK", "WKRRRRWK", "WKRRRRWK", "WWWWWWWK", ".KKKKKKK"})},
      {HBOX_Black, 5, Picture({"KKKKK", "KRRRK", "KRRRK", "KRRRK", "KKKKK"})},
      {HBOX_Thick, 10,
       Picture({"KKKKKKKKKK", "KWWWWWWWGK", "KWWWWWWGGK", "KWWKKKKGGK", "KWWKRRKGGK", "KWWKRRKGGK", "KWWKKKKGGK",
                "KWWGGGGGGK", "KWGGGGGGGK", "KKKKKKKKKK"})},
      {HBOX_Thicker, 12,
       Picture({"KKKKKKKKKKKK", "KWWWWWWWWWGK", "KWWWWWWWWGGK", "KWWWWWWWGGGK", "KWWWKKKKGGGK", "KWWWKRRKGGGK",
                "KWWWKRRKGGGK", "KWWWKKKKGGGK", "KWWWGGGGGGGK", "KWWGGGGGGGGK", "KWGGGGGGGGGK", "KKKKKKKKKKKK"})},
      {HBOX_Button, 7, Picture({"KKKKKKK", "KWWWWGK", "KWRRRGK", "KWRRRGK", "KWRRRGK", "KWGGGGK", "KKKKKKK"})},
      {HBOX_Pushed, 7, Picture({"KKKKKKK", "KGGGGWK", "KGRRRWK", "KGRRRWK", "KGRRRWK", "KGWWWWK", "KKKKKKK"})},
      {HBOX_Fill, 3, Picture({"RRR", "RRR", "RRR"})},
      {HBOX_Nothing, 3, Picture({"...", "...", "..."})},
      {HBOX_Outline, 4, Picture({"RRRR", "R..R", "R..R", "RRRR"})},
      {HBOX_Outline2, 4, Picture({"RRRR", "R..R", "R..R", "RRRR"})},
      {HBOX_GroupLowered, 10,
       Picture({"GGGGGGGGGG", "GWWWWWWWWG", "GWGGGGGGWG", "GWGWWWWGWG", "GWGWRRWGWG", "GWGWRRWGWG", "GWGWWWWGWG",
                "GWGGGGGGWG", "GWWWWWWWWG", "GGGGGGGGGG"})},
      {HBOX_GroupRaised, 9,
       Picture({"WWWWWWWWW", "WGGGGGGGW", "WGWWWWWGW", "WGWGGGWGW", "WGWGRGWGW", "WGWGGGWGW", "WGWWWWWGW", "WGGGGGGGW",
                "WWWWWWWWW"})},
      {HBOX_Types(14), 3, Picture({"RRR", "RRR", "RRR"})},
  };
  for (const BoxCase& k : cases) {
    BothSurfaces s(k.size, k.size);
    s.Run([&](auto* c) { TC_Box(c, MyRect{0, 0, k.size, k.size}, clRed, k.type); });
    EXPECT_BOTH_PICTURE(s, k.expected, "box type " << int(k.type));
  }
}

TEST(TcDrawBox, ColoursThatDrawNothingOrKeepTheBrush) {
  BothSurfaces s(5, 5);
  s.bmp.GetCanvas()->GetBrush()->SetColor(clBlue);
  s.hc.GetBrush()->SetColor(clBlue);
  s.Run([](auto* c) {
    TC_Box(c, MyRect{0, 0, 5, 5}, clDefault, HBOX_Black);
    TC_Box(c, MyRect{0, 0, 3, 3}, clNone, HBOX_Outline);
    TC_Box(c, MyRect{1, 1, 4, 4}, clNone, HBOX_Fill);
  });
  EXPECT_BOTH_PICTURE(s, Picture({"KKKKK", "KBBBK", "KBBBK", "KBBBK", "KKKKK"}),
                      "clDefault fills with the brush colour, clNone draws nothing");
  TC_Box(static_cast<TCanvas*>(nullptr), MyRect{0, 0, 5, 5}, clRed, HBOX_Black);
  TC_Box(static_cast<HCustomCanvas*>(nullptr), MyRect{0, 0, 5, 5}, clRed, HBOX_Black);
}

TEST(TcDrawBox, ColorBoxColorRectAndOutlines) {
  BothSurfaces s(12, 6);
  s.Run([](auto* c) {
    TC_ColorBox(c, MyRect{0, 0, 4, 4}, clBlue, clRed);
    TC_ColorRect(c, MyRect{5, 0, 12, 5}, clLime, 2);
    TC_ColorRect(c, MyRect{0, 5, 3, 6}, clBlue, 0);
  });
  EXPECT_BOTH_PICTURE(
      s, Picture({"BBBB.LLLLLLL", "BRRB.LLLLLLL", "BRRB.LL...LL", "BBBB.LLLLLLL", ".....LLLLLLL", "............"}),
      "ColorBox, ColorRect of width 2 and of width 0");
  BothSurfaces t(8, 4);
  t.Run([](auto* c) {
    TC_Rect(c, MyRect{0, 0, 4, 4}, clRed);
    TC_Line(c, MyRect{5, 0, 8, 3}, clBlue);
    TC_Rect(c, MyRect{4, 3, 8, 4}, clLime);
  });
  EXPECT_BOTH_PICTURE(t, Picture({"RRRR.BBB", "R..R.B.B", "R..R.BBB", "RRRRLLLL"}),
                      "Rect, the four edges as lines, a one-pixel-high Rect");
}

}  // namespace
