#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "platform/vcl/controls.h"
#include "tests/velkin/draw/draw_pixels.h"
#include "velkin/draw/gdi_canvas_dc.h"

using namespace draw_pixels;
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

// A window of the scene's size.
std::unique_ptr<Controls::TWinControl> Window() {
  auto w = std::make_unique<Controls::TWinControl>();
  w->SetBounds(0, 0, W, H);
  return w;
}

TEST(CanvasBackings, EveryBackingDrawsTheSamePixels) {
  HBitmapCanvas reference;
  reference.Resize(W, H);
  Scene(&reference);
  const Reader expected = Of(reference);
  // Border outer and inner line, box outline and fill, dash on and off.
  const uint32_t marks[][3] = {{1, 1, 0x808080},  {2, 2, 0xFFFFFF},  {22, 1, 0},
                               {28, 6, 0xFF0000}, {1, 14, 0x0000FF}, {4, 14, 0xC0C0C0}};
  for (auto [x, y, rgb] : marks) EXPECT_EQ(expected(x, y), rgb) << "at " << x << "," << y;

  TBitmap bmp;
  bmp.SetSize(W, H);
  Scene(std::make_unique<HCanvasCanvas>(bmp.GetCanvas(), W, H).get());  // drawn and gone
  EXPECT_EQ(Diff(Of(bmp), expected, W, H), "") << "HCanvasCanvas";

  Surface raw(W, H);
  auto* api = new HAPICanvas;
  api->SetHDC(raw.Dc(), W, H);
  Scene(api);
  delete api;
  EXPECT_EQ(Diff(raw.Read(), expected, W, H), "") << "HAPICanvas";

  auto w = Window();
  HCustomCanvas* c = new HControlCanvas(w.get());
  Scene(c);
  Surface copy(W, H);
  c->CopyTo(copy.Dc());
  delete c;
  EXPECT_EQ(Diff(copy.Read(), expected, W, H), "") << "HControlCanvas";
}

TEST(CanvasBackings, ControlCanvasReleasesItsContext) {
  auto w = Window();
  HWND window = w->GetHandle();
  ASSERT_NE(window, nullptr);
  auto* c = new HControlCanvas(w.get());
  HDC dc = static_cast<HDC>(c->GetHandle());
  ASSERT_NE(dc, nullptr);
  c->LineTo(5, 5, clRed);
  EXPECT_EQ(c->GetHandle(), dc) << "the context is fetched once and kept";
  HGDIOBJ ourPen = GetCurrentObject(dc, OBJ_PEN);
  EXPECT_NE(GetObjectType(ourPen), 0u);
  // Whether the window's cache hands dc out again within `tries` requests.
  auto handedOut = [&](int tries) {
    std::vector<HDC> taken;
    for (int i = 0; i < tries && (taken.empty() || taken.back() != dc); ++i) taken.push_back(GetDC(window));
    const bool found = taken.back() == dc;
    for (HDC d : taken) ReleaseDC(window, d);
    return found;
  };
  EXPECT_FALSE(handedOut(4)) << "the canvas still holds its context";
  delete c;
  EXPECT_EQ(GetObjectType(ourPen), 0u) << "the canvas's pen is gone";
  EXPECT_TRUE(GetObjectType(dc) == 0 || handedOut(8)) << "the context went back to the window";
}

TEST(CanvasBackings, ClipStackNarrowsAndUnwinds) {
  HBitmapCanvas c;  // black
  c.Resize(12, 8);
  c.AddClip(MyRect{2, 2, 40, 40});
  EXPECT_EQ(c.CurClip(), (MyRect{2, 2, 12, 8}));
  // Reversed edges are put in order, edges are inclusive, a second clip
  // stays inside the first.
  c.AddClip(MyRect{6, 5, 1, 1});
  EXPECT_EQ(c.CurClip(), (MyRect{2, 2, 7, 6}));
  c.Fill(MyRect{0, 0, 12, 8}, clRed);
  EXPECT_EQ(
      Picture(Of(c), 12, 8),
      Rows("KKKKKKKKKKKK KKKKKKKKKKKK KKRRRRRKKKKK KKRRRRRKKKKK KKRRRRRKKKKK KKRRRRRKKKKK KKKKKKKKKKKK KKKKKKKKKKKK"));
  c.RestoreClip();
  EXPECT_EQ(c.CurClip(), (MyRect{2, 2, 12, 8}));
  c.RestoreClip();
  c.RestoreClip();  // on an empty stack: nothing
  EXPECT_EQ(c.CurClip(), (MyRect{0, 0, 12, 8}));
  c.Fill(MyRect{0, 0, 12, 8}, clLime);
  EXPECT_EQ(Diff(Of(c), Plain(0x00FF00), 12, 8), "") << "no clip left: the whole surface draws";
}

TEST(CanvasBackings, PenSlotHoldsOneCopy) {
  HBitmapCanvas c;
  HGDIPen red;
  red.SetColor(clRed);
  c.SavePen();
  c.SetPen(&red);
  red.SetColor(clBlue);
  EXPECT_EQ(c.GetPen()->GetColor(), clRed) << "SetPen copies, it does not keep the caller's pen";
  c.SavePen();
  c.RestorePen();
  c.RestorePen();
  EXPECT_EQ(c.GetPen()->GetColor(), clRed) << "one slot: the second save replaced the first";
  // The restored pen draws on from the end of the last line, which stays excluded.
  c.Resize(10, 2);
  c.Fill(MyRect{0, 0, 10, 2}, clSilver);
  c.SavePen();
  c.Line(0, 1, 5, 1, clBlue);
  c.RestorePen();
  c.LineTo(8, 1);
  EXPECT_EQ(Picture(Of(c), 10, 2), Rows(".......... BBBBBRRR.."));
}

TEST(CanvasBackings, PatternGoesOnAcrossLineToUntilMoveTo) {
  HBitmapCanvas c;
  c.Resize(20, 4);
  c.Fill(MyRect{0, 0, 20, 4}, clSilver);
  HGDIPen p;  // 3 on, 2 off: a restart at the second LineTo would show
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
  EXPECT_EQ(Picture(Of(c), 20, 4),
            Rows(".................... KKK..KKK..KKK..K.... KKK................. .....RRR..RR........"));
  // The pattern steps only over pixels inside the clip.
  c.Fill(MyRect{0, 0, 20, 4}, clSilver);
  c.AddClip(MyRect{4, 0, 19, 3});
  c.MoveTo(0, 0);
  c.LineTo(12, 0);
  c.RestoreClip();
  EXPECT_EQ(Picture(Of(c), 20, 1), Rows("....KKK..KKK........"));
}

TEST(CanvasBackings, EllipseOutlineOnly) {
  HBitmapCanvas c;
  c.Resize(12, 12);
  const Reader px = Of(c);
  c.Fill(MyRect{0, 0, 12, 12}, clSilver);
  c.Ellipse(MyRect{1, 1, 9, 9}, clNone);
  EXPECT_EQ(Diff(px, Plain(0xC0C0C0), 12, 12), "") << "clNone";
  c.Ellipse(MyRect{1, 1, 9, 9}, clDefault);  // the pen's black; the rectangle is inclusive, not filled
  const uint32_t probes[][3] = {{5, 1, 0}, {1, 5, 0}, {9, 5, 0}, {5, 9, 0}, {10, 5, 0xC0C0C0}, {5, 5, 0xC0C0C0}};
  for (auto [x, y, rgb] : probes) EXPECT_EQ(px(x, y), rgb) << "at " << x << "," << y;
  c.Ellipse(MyRect{1, 1, 9, 9}, clRed);
  EXPECT_EQ(px(5, 1), 0xFF0000u);
  EXPECT_EQ(c.GetPen()->GetColor(), clBlack);
}

TEST(CanvasBackings, TransDrawAndCutDraw) {
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
  c.TransDraw(MyPoint{0, 0}, nullptr, clWhite);  // a null bitmap draws nothing
  c.Draw(MyPoint{0, 0}, nullptr);
  c.Draw(MyPoint{0, 0}, &bmp);
  c.TransDraw(MyPoint{5, 0}, &bmp, clWhite);
  c.Draw(MyRect{9, 0, 12, 2}, &bmp, HBT_Copy);  // cut to the rectangle
  EXPECT_EQ(Picture(Of(c), 12, 4), Rows("BBBB.BBBBBBB BWWB.B..BBWW BBBB.BBBB... ............"));
}

TEST(CanvasBackings, AntiAliasedCopySmoothsTheClipArea) {
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
