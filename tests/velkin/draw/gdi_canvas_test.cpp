// The canvas over every backing: the same drawing gives the same pixels,
// clips narrow and unwind, the pen slot, dashed lines, ellipses and blits, and
// what a fresh canvas holds.
#include "velkin/draw/gdi_canvas.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <memory>

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

// Runs draw on each backing, W x H, and hands its pixels to check, read once
// the canvas is gone (the control canvas's through CopyTo before it goes).
void OnEveryBacking(const std::function<void(HCustomCanvas*)>& draw,
                    const std::function<void(const char* backing, const Reader& read)>& check) {
  {
    HBitmapCanvas bitmap;
    bitmap.Resize(W, H);
    draw(&bitmap);
    check("HBitmapCanvas", Of(bitmap));
  }
  TBitmap bmp;
  bmp.SetSize(W, H);
  draw(std::make_unique<HCanvasCanvas>(bmp.GetCanvas(), W, H).get());
  check("HCanvasCanvas", Of(bmp));

  Surface raw(W, H);
  auto* api = new HAPICanvas;
  api->SetHDC(raw.Dc(), W, H);
  draw(api);
  delete api;
  check("HAPICanvas", raw.Read());

  auto w = Window();
  HCustomCanvas* c = new HControlCanvas(w.get());
  draw(c);
  Surface copy(W, H);
  c->CopyTo(copy.Dc());
  delete c;
  check("HControlCanvas", copy.Read());
}

TEST(HCustomCanvas, EveryBackingDrawsTheSamePixels) {
  HBitmapCanvas reference;
  reference.Resize(W, H);
  Scene(&reference);
  const Reader expected = Of(reference);
  // Border outer and inner line, box outline and fill, dash on and off.
  const uint32_t marks[][3] = {{1, 1, 0x808080},  {2, 2, 0xFFFFFF},  {22, 1, 0},
                               {28, 6, 0xFF0000}, {1, 14, 0x0000FF}, {4, 14, 0xC0C0C0}};
  for (auto [x, y, rgb] : marks) EXPECT_EQ(expected(x, y), rgb) << "at " << x << "," << y;
  OnEveryBacking(
      Scene, [&](const char* backing, const Reader& read) { EXPECT_EQ(Diff(read, expected, W, H), "") << backing; });
}

TEST(HCustomCanvas, ClipStackNarrowsAndUnwinds) {
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

TEST(HCustomCanvas, NestedClipStopsAtTheOuterClipsRightAndBottomEdges) {
  MyRect nested{};
  OnEveryBacking(
      [&](HCustomCanvas* c) {
        c->Fill(MyRect{0, 0, W, H}, clSilver);
        c->AddClip(MyRect{2, 1, 6, 4});    // columns 2-6, rows 1-4
        c->AddClip(MyRect{4, 3, 30, 30});  // reaches past both: columns 4-6, rows 3-4
        nested = c->CurClip();
        c->Fill(MyRect{0, 0, W, H}, clRed);
        c->RestoreClip();  // the outer clip again
        c->Fill(MyRect{0, 0, W, 2}, clBlue);
        c->RestoreClip();  // none
        c->Fill(MyRect{0, 7, W, 8}, clLime);
      },
      [&](const char* backing, const Reader& read) {
        EXPECT_EQ((MyRect{4, 3, 7, 5}), nested) << backing << ", CurClip of the nested clip";
        EXPECT_EQ(Rows("............ ..BBBBB..... ............ ....RRR..... ....RRR..... ............ ............ "
                       "LLLLLLLLLLLL"),
                  Picture(read, 12, 8))
            << backing;
      });
}

TEST(HCustomCanvas, FreshCanvasesHoldTheirDefaults) {
  LOGFONTA stock{};
  GetObjectA(GetStockObject(ANSI_VAR_FONT), sizeof stock, &stock);
  TBitmap bmp;
  bmp.SetSize(5, 4);
  HBitmapCanvas bitmap;
  HCanvasCanvas canvas(bmp.GetCanvas(), 5, 4);
  HAPICanvas api;
  HControlCanvas control(nullptr);
  const struct {
    const char* backing;
    HCustomCanvas* c;
    bool handle;
    int width, height;
  } fresh[] = {{"HBitmapCanvas", &bitmap, true, 1, 1},
               {"HCanvasCanvas", &canvas, true, 5, 4},
               {"HAPICanvas without a context", &api, false, 0, 0},
               {"HControlCanvas without a control", &control, false, 0, 0}};
  for (const auto& f : fresh) {
    HCustomCanvas& c = *f.c;
    const struct {
      const char* field;
      long long actual, expected;
    } rows[] = {
        {"clip count", c.GetClipCount(), 0},
        {"anti-alias", c.GetAntiAlias(), false},
        {"pen position x", c.GetPenPos().x, 0},
        {"pen position y", c.GetPenPos().y, 0},
        {"pen colour", c.GetPen()->GetColor(), clBlack},
        {"brush colour", c.GetBrush()->GetColor(), clWhite},
        {"font record is the stock variable font's", std::memcmp(&c.GetFont()->GetLogFont(), &stock, sizeof stock), 0},
        {"width", c.GetWidth(), f.width},
        {"height", c.GetHeight(), f.height},
        {"has a context", c.GetHandle() != nullptr, f.handle},
    };
    for (const auto& r : rows) EXPECT_EQ(r.expected, r.actual) << f.backing << ", " << r.field;
    EXPECT_EQ((MyRect{0, 0, f.width, f.height}), c.CurClip()) << f.backing << ", CurClip";
  }
}

TEST(HCustomCanvas, PenSlotHoldsOneCopy) {
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

TEST(HCustomCanvas, PatternGoesOnAcrossLineToUntilMoveTo) {
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

TEST(HCustomCanvas, EllipseOutlineOnly) {
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

TEST(HCustomCanvas, TransDrawAndCutDraw) {
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

}  // namespace
