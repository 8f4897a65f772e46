#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "platform/vcl/controls.h"
#include "platform/vcl/graphics_bitmap.h"
#include "tests/velkin/draw/canvas_pixels.h"
#include "velkin/draw/gdi_canvas_bitmap.h"
#include "velkin/draw/gdi_canvas_dc.h"

using namespace canvas_pixels;
using namespace Graphics;
using Controls::alBottom;
using Controls::alLeft;
using Controls::alRight;
using Controls::alTop;

namespace {

constexpr int W = 48, H = 26;

// Something of everything the canvas draws itself or forwards.
void Scene(HCustomCanvas* c) {
  c->Fill(MyRect{0, 0, W, H}, clSilver);
  c->Border(MyRect{1, 1, 20, 12}, HBRD_Lowered, TC_Sides{alTop, alBottom, alLeft, alRight}, clNone);
  c->Box(MyRect{22, 1, 34, 12}, clRed, HBOX_Button);
  HGDIPen dashed;
  dashed.SetPattern("3,2");
  dashed.SetColor(clBlue);
  c->SetPen(&dashed);
  c->MoveTo(1, 14);
  c->LineTo(30, 14);
  c->LineTo(30, 24);
  c->Ellipse(MyRect{2, 16, 12, 23}, clRed);
  c->FillEllipse(MyRect{14, 16, 20, 22}, clLime);
  tagPOINT tri[] = {{36, 2}, {46, 2}, {41, 10}};
  c->Fill(tri, 3, clBlue);
  c->Line(MyPoint{34, 20}, MyPoint{46, 14}, HFT_FillArrow, 5);
}

struct ControlWindow {
  ControlWindow() : control(new Controls::TWinControl) { control->SetBounds(0, 0, W, H); }
  ~ControlWindow() { delete control; }
  Controls::TWinControl* control;
};

TEST(CanvasBackings, EveryBackingDrawsTheSamePixels) {
  HBitmapCanvas reference;
  reference.Resize(W, H);
  Scene(&reference);
  const Reader expected = [&](int x, int y) { return At(reference.GetDib(), x, y); };
  // The scene draws what it should at all (a few landmarks).
  EXPECT_EQ(expected(1, 1), 0x808080u) << "border outer line";
  EXPECT_EQ(expected(2, 2), 0xFFFFFFu) << "border inner line";
  EXPECT_EQ(expected(22, 1), 0x000000u) << "box outline";
  EXPECT_EQ(expected(28, 6), 0xFF0000u) << "box fill";
  EXPECT_EQ(expected(1, 14), 0x0000FFu) << "dash on";
  EXPECT_EQ(expected(4, 14), 0xC0C0C0u) << "dash off";

  {
    TBitmap bmp;
    bmp.SetSize(W, H);
    auto* c = new HCanvasCanvas(bmp.GetCanvas(), W, H);
    Scene(c);
    delete c;
    EXPECT_EQ(Diff([&](int x, int y) { return At(&bmp, x, y); }, expected, W, H), "") << "HCanvasCanvas";
  }
  {
    Surface s(W, H);
    auto* c = new HAPICanvas;
    c->SetHDC(s.Dc(), W, H);
    EXPECT_EQ(c->GetWidth(), W);
    Scene(c);
    delete c;
    EXPECT_EQ(Diff([&](int x, int y) { return s.At(x, y); }, expected, W, H), "") << "HAPICanvas";
  }
  {
    ControlWindow w;
    auto* c = new HControlCanvas(w.control);
    EXPECT_EQ(c->GetWidth(), W);
    EXPECT_EQ(c->GetHeight(), H);
    Scene(c);
    Surface s(W, H);
    c->CopyTo(s.Dc());
    delete c;
    EXPECT_EQ(Diff([&](int x, int y) { return s.At(x, y); }, expected, W, H), "") << "HControlCanvas";
  }
}

TEST(CanvasBackings, ControlCanvasReleasesItsContext) {
  ControlWindow w;
  HWND window = w.control->GetHandle();
  ASSERT_NE(window, nullptr);
  auto* c = new HControlCanvas(w.control);
  HDC dc = static_cast<HDC>(c->GetHandle());
  ASSERT_NE(dc, nullptr);
  EXPECT_EQ(c->GetHandle(), dc) << "the context is fetched once and kept";
  c->LineTo(5, 5, clRed);
  EXPECT_EQ(c->GetHandle(), dc);  // puts the canvas's own pen back after the thin line
  HGDIOBJ ourPen = GetCurrentObject(dc, OBJ_PEN);
  EXPECT_NE(ourPen, GetStockObject(DC_PEN));
  EXPECT_NE(GetObjectType(ourPen), 0u);
  // Whether the window's cache hands dc out again within `tries` requests.
  auto handedOut = [&](int tries) {
    std::vector<HDC> taken;
    bool found = false;
    for (int i = 0; i < tries && !found; ++i) {
      taken.push_back(GetDC(window));
      found = taken.back() == dc;
    }
    for (HDC d : taken) ReleaseDC(window, d);
    return found;
  };
  EXPECT_FALSE(handedOut(4)) << "the canvas still holds its context";
  delete c;
  EXPECT_EQ(GetObjectType(ourPen), 0u) << "the canvas's pen is gone";
  EXPECT_TRUE(GetObjectType(dc) == 0 || handedOut(8)) << "the context went back to the window";
  HDC fresh = GetDC(window);
  EXPECT_NE(GetCurrentObject(fresh, OBJ_PEN), ourPen);
  ReleaseDC(window, fresh);

  HControlCanvas none(nullptr);
  EXPECT_EQ(none.GetHandle(), nullptr);
  EXPECT_EQ(none.GetWidth(), 0);
  EXPECT_EQ(none.GetHeight(), 0);
  none.LineTo(3, 3, clRed);  // no context: nothing happens, nothing breaks
  none.Fill(MyRect{0, 0, 5, 5}, clRed);
}

TEST(CanvasBackings, ClipStackNarrowsAndUnwinds) {
  HBitmapCanvas c;
  c.Resize(100, 50);
  EXPECT_EQ(c.CurClip(), (MyRect{0, 0, 100, 50}));
  c.AddClip(MyRect{10, 10, 200, 200});
  EXPECT_EQ(c.CurClip(), (MyRect{10, 10, 100, 50}));
  // Reversed edges are put in order; a second clip stays inside the first.
  c.AddClip(MyRect{30, 40, 5, 5});
  EXPECT_EQ(c.CurClip(), (MyRect{10, 10, 31, 41}));
  c.Fill(MyRect{0, 0, 100, 50}, clRed);
  EXPECT_EQ(At(c.GetDib(), 10, 10), 0xFF0000u);
  EXPECT_EQ(At(c.GetDib(), 30, 40), 0xFF0000u) << "clip edges are inclusive";
  EXPECT_EQ(At(c.GetDib(), 31, 40), 0x000000u);
  EXPECT_EQ(At(c.GetDib(), 9, 10), 0x000000u);
  c.RestoreClip();
  EXPECT_EQ(c.CurClip(), (MyRect{10, 10, 100, 50}));
  c.Fill(MyRect{0, 0, 100, 50}, clBlue);
  EXPECT_EQ(At(c.GetDib(), 50, 45), 0x0000FFu) << "the first clip applies again";
  EXPECT_EQ(At(c.GetDib(), 5, 5), 0x000000u);
  c.RestoreClip();
  EXPECT_EQ(c.CurClip(), (MyRect{0, 0, 100, 50}));
  EXPECT_EQ(c.GetClipCount(), 0);
  c.Fill(MyRect{0, 0, 100, 50}, clLime);
  EXPECT_EQ(At(c.GetDib(), 5, 5), 0x00FF00u) << "no clip left: the whole surface draws";
  c.RestoreClip();  // on an empty stack: nothing
  EXPECT_EQ(c.GetClipCount(), 0);
}

TEST(CanvasBackings, PenBrushFontSlotsHoldOneCopy) {
  HBitmapCanvas c;
  HGDIPen red;
  red.SetColor(clRed);
  c.SavePen();
  c.SetPen(&red);
  red.SetColor(clBlue);
  EXPECT_EQ(c.GetPen()->GetColor(), clRed) << "SetPen copies, it does not keep the caller's pen";
  c.SavePen();
  c.RestorePen();
  EXPECT_EQ(c.GetPen()->GetColor(), clRed) << "the second save replaced the first";

  // Saving between lines changes nothing on the lines: ends stay excluded.
  c.Resize(10, 2);
  c.Fill(MyRect{0, 0, 10, 2}, clSilver);
  c.Line(0, 0, 5, 0, clBlue);
  c.SavePen();
  c.Line(0, 1, 5, 1, clBlue);
  c.RestorePen();
  c.LineTo(8, 1);
  EXPECT_EQ(Picture([&](int x, int y) { return At(c.GetDib(), x, y); }, 10, 2), Picture({"BBBBB.....", "BBBBBRRR.."}));

  HGDIBrush brush;
  brush.SetColor(clLime);
  c.SaveBrush();
  c.SetBrush(&brush);
  EXPECT_EQ(c.GetBrush()->GetColor(), clLime);
  c.RestoreBrush();
  EXPECT_EQ(c.GetBrush()->GetColor(), clWhite);

  HGDIFont font;
  font.SetColor(clRed);
  font.SetHeight(-20);
  c.SaveFont();
  c.SetFont(&font);
  EXPECT_EQ(c.GetFont()->GetHeight(), -20);
  c.RestoreFont();
  EXPECT_EQ(c.GetFont()->GetColor(), clBlack);
  EXPECT_NE(c.GetFont()->GetHeight(), -20);
}

TEST(CanvasBackings, PatternGoesOnAcrossLineToUntilMoveTo) {
  HBitmapCanvas c;
  c.Resize(20, 4);
  c.Fill(MyRect{0, 0, 20, 4}, clSilver);
  HGDIPen p;
  p.SetPattern("2,2");
  c.SetPen(&p);
  c.MoveTo(0, 0);
  c.LineTo(8, 0);
  // The pattern of 3 on, 2 off: a restart at the second LineTo would show.
  p.SetPattern("3,2");
  c.SetPen(&p);
  c.MoveTo(0, 1);
  c.LineTo(8, 1);
  c.LineTo(16, 1);
  c.MoveTo(0, 2);
  c.LineTo(4, 2);
  // clNone draws nothing but walks the pattern on.
  c.MoveTo(0, 3);
  c.LineTo(4, 3, clNone);
  c.LineTo(12, 3, clRed);
  EXPECT_EQ(c.GetPen()->GetColor(), clBlack) << "the call's colour is not kept";
  EXPECT_EQ(Picture([&](int x, int y) { return At(c.GetDib(), x, y); }, 20, 4),
            Picture({"KK..KK..............",  //
                     "KKK..KKK..KKK..K....",  //
                     "KKK.................",  //
                     ".....RRR..RR........"}));
  // The pattern steps only over pixels inside the clip.
  c.Fill(MyRect{0, 0, 20, 4}, clSilver);
  c.AddClip(MyRect{4, 0, 19, 3});
  c.MoveTo(0, 0);
  c.LineTo(12, 0);
  c.RestoreClip();
  EXPECT_EQ(Picture([&](int x, int y) { return At(c.GetDib(), x, y); }, 20, 1), Picture({"....KKK..KKK........"}));
}

TEST(CanvasBackings, EllipseOutlineOnly) {
  HBitmapCanvas c;
  c.Resize(12, 12);
  const Reader px = [&](int x, int y) { return At(c.GetDib(), x, y); };
  c.Fill(MyRect{0, 0, 12, 12}, clSilver);
  c.Ellipse(MyRect{1, 1, 9, 9}, clNone);
  EXPECT_EQ(Diff(
                px, [](int, int) { return 0xC0C0C0u; }, 12, 12),
            "")
      << "clNone";
  c.Ellipse(MyRect{1, 1, 9, 9}, clDefault);
  EXPECT_EQ(px(5, 1), 0x000000u);
  EXPECT_EQ(px(1, 5), 0x000000u);
  EXPECT_EQ(px(9, 5), 0x000000u) << "the rectangle is inclusive";
  EXPECT_EQ(px(5, 9), 0x000000u);
  EXPECT_EQ(px(10, 5), 0xC0C0C0u);
  EXPECT_EQ(px(5, 5), 0xC0C0C0u) << "not filled";
  c.Ellipse(MyRect{1, 1, 9, 9}, clRed);
  EXPECT_EQ(px(5, 1), 0xFF0000u);
  EXPECT_EQ(c.GetPen()->GetColor(), clBlack);

  c.Fill(MyRect{0, 0, 12, 12}, clSilver);
  c.GetPen()->SetWidth(0);
  c.Ellipse(MyRect{1, 1, 9, 9}, clRed);
  c.GetPen()->SetWidth(1);
  c.GetPen()->SetStyle(HPS_None);
  c.Ellipse(MyRect{1, 1, 9, 9}, clRed);
  EXPECT_EQ(Diff(
                px, [](int, int) { return 0xC0C0C0u; }, 12, 12),
            "")
      << "width 0 and HPS_None draw nothing";
}

TEST(CanvasBackings, DrawAndTransDrawBitmaps) {
  TBitmap bmp;
  bmp.SetSize(4, 3);
  HBitmapCanvas pic;  // a 4 x 3 picture: blue, with a white middle
  pic.Resize(4, 3);
  pic.Fill(MyRect{0, 0, 4, 3}, clBlue);
  pic.Fill(MyRect{1, 1, 3, 2}, clWhite);
  pic.CopyTo(bmp.GetCanvas()->GetHandle());

  HBitmapCanvas c;
  c.Resize(12, 4);
  c.Fill(MyRect{0, 0, 12, 4}, clSilver);
  c.TransDraw(MyPoint{0, 0}, nullptr, clWhite);
  c.Draw(MyPoint{0, 0}, nullptr);
  c.Draw(MyPoint{0, 0}, &bmp);
  c.TransDraw(MyPoint{5, 0}, &bmp, clWhite);
  c.Draw(MyRect{9, 0, 12, 2}, &bmp, HBT_Copy);  // cut to the rectangle
  EXPECT_EQ(Picture([&](int x, int y) { return At(c.GetDib(), x, y); }, 12, 4),
            Picture({"BBBB.BBBBBBB",  //
                     "BWWB.B..BBWW",  //
                     "BBBB.BBBB...",  //
                     "............"}));
}

TEST(CanvasBackings, BlitPlacements) {
  TBitmap bmp;  // 3 x 2: blue, white, lime / white, blue, white
  bmp.SetSize(3, 2);
  for (int i = 0; i < 6; ++i)
    bmp.GetCanvas()->SetPixels(i % 3, i / 3, (i == 1 || i == 3 || i == 5) ? clWhite : i == 2 ? clLime : clBlue);
  const struct {
    HBT_Types mode;
    MyRect r;
    std::string expected;
  } cases[] = {
      {HBT_Copy, {1, 1, 3, 4}, Picture({"......", ".BW...", ".WB...", "......"})},
      {HBT_Center, {0, 0, 6, 4}, Picture({"......", ".BWL..", ".WBW..", "......"})},
      {HBT_Tile, {0, 0, 6, 3}, Picture({"BWLBWL", "WBWWBW", "BWLBWL", "......"})},
      {HBT_Stretch, {0, 0, 6, 4}, Picture({"BBWWLL", "BBWWLL", "WWBBWW", "WWBBWW"})},
      {HBT_Fit, {0, 0, 6, 2}, Picture({".BWL..", ".WBW..", "......", "......"})},
  };
  for (const auto& k : cases) {
    HBitmapCanvas c;
    c.Resize(6, 4);
    c.Fill(MyRect{0, 0, 6, 4}, clSilver);
    c.Draw(k.r, &bmp, k.mode);
    EXPECT_EQ(Picture([&](int x, int y) { return At(c.GetDib(), x, y); }, 6, 4), k.expected) << "mode " << int(k.mode);
  }
}

TEST(CanvasBackings, AntiAliasedCopySmoothsTheClipArea) {
  HBitmapCanvas c;
  c.Resize(8, 4);
  c.Fill(MyRect{0, 0, 4, 4}, clBlack);
  c.Fill(MyRect{4, 0, 8, 4}, clWhite);
  Surface plain(8, 4), smooth(8, 4);
  c.CopyTo(plain.Dc());
  EXPECT_EQ(
      Diff([&](int x, int y) { return plain.At(x, y); }, [&](int x, int y) { return At(c.GetDib(), x, y); }, 8, 4), "")
      << "without the flag a plain copy";
  c.SetAntiAlias(true);
  c.CopyTo(smooth.Dc());
  // The sample at x = 4 averages itself (white), the pixel two to its left
  // (black) and, away from the bottom line, the pixel two lines below (white).
  EXPECT_EQ(smooth.At(4, 0), 0xAAAAAAu);
  EXPECT_EQ(smooth.At(4, 3), 0x7F7F7Fu) << "the bottom line has no line below";
  EXPECT_EQ(smooth.At(5, 1), 0xFFFFFFu) << "pixels between samples are copied as drawn";
  EXPECT_EQ(smooth.At(1, 1), 0x000000u);
  EXPECT_EQ(At(c.GetDib(), 4, 0), 0xFFFFFFu) << "the canvas itself is untouched";
}

}  // namespace
