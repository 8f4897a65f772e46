// The canvas over every backing: the same drawing gives the same pixels,
// clips narrow and unwind, the pen slot, dashed lines, ellipses and blits, and
// what a fresh canvas holds.
#include "velkin/draw/gdi_canvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "platform/ostrel/dc_changer.h"
#include "platform/vcl/controls/controls.h"
#include "tests/velkin/draw/draw_pixels.h"
#include "velkin/draw/gdi_canvas_dc.h"
#include "velkin/gdi/gdi_lines.h"

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

  Surface raw(W, H), copy(W, H);
  auto api = std::make_unique<HAPICanvas>();
  api->SetHDC(raw.Dc(), W, H);
  draw(api.get());
  api.reset();
  check("HAPICanvas", raw.Read());

  auto window = std::make_unique<Controls::TWinControl>();
  window->SetBounds(0, 0, W, H);
  std::unique_ptr<HCustomCanvas> control = std::make_unique<HControlCanvas>(window.get());
  draw(control.get());
  control->CopyTo(copy.Dc());
  control.reset();
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

// Edges are inclusive and put in order; a clip stays inside the one before
// and the surface; each RestoreClip unwinds one, one too many does nothing.
TEST(HCustomCanvas, ClipsNarrowAndUnwind) {
  std::ostringstream clips;
  OnEveryBacking(
      [&](HCustomCanvas* c) {
        clips.str("");
        c->Fill(MyRect{0, 0, W, H}, clSilver);
        c->AddClip(MyRect{40, 20, 90, 90});
        clips << c->CurClip() << " ";
        c->RestoreClip();
        c->AddClip(MyRect{6, 4, 2, 1});  // columns 2-6, rows 1-4
        clips << c->CurClip() << " ";
        c->AddClip(MyRect{4, 3, 30, 30});  // reaches past both: columns 4-6, rows 3-4
        clips << c->CurClip() << " ";
        c->Fill(MyRect{0, 0, W, H}, clRed);
        c->RestoreClip();  // the outer clip again
        c->Fill(MyRect{0, 0, W, 2}, clBlue);
        c->RestoreClip();
        c->RestoreClip();  // on an empty stack: nothing
        clips << c->CurClip() << " " << c->GetClipCount();
        c->Fill(MyRect{0, 7, W, 8}, clLime);
      },
      [&](const char* backing, const Reader& read) {
        EXPECT_EQ("(40,20)-(48,26) (2,1)-(7,5) (4,3)-(7,5) (0,0)-(48,26) 0", clips.str()) << backing << ", CurClip";
        EXPECT_EQ(Rows("............ ..BBBBB..... ............ ....RRR..... ....RRR..... ............ ............ "
                       "LLLLLLLLLLLL"),
                  Picture(read, 12, 8))
            << backing;
      });
}

// A fresh canvas holds no clip and its pen at (0, 0); its size, context and
// clip are the backing's (its pen, brush and font are fresh wrappers').
std::string Describe(HCustomCanvas& c) {
  return (std::ostringstream() << "clips " << c.GetClipCount() << ", pen at " << c.GetPenPos().x << ","
                               << c.GetPenPos().y << ", " << c.GetWidth() << "x" << c.GetHeight() << ", context "
                               << (c.GetHandle() != nullptr) << ", clip " << c.CurClip())
      .str();
}

TEST(HCustomCanvas, FreshCanvasesHoldTheirDefaults) {
  TBitmap bmp;
  bmp.SetSize(5, 4);
  HBitmapCanvas bitmap;
  HCanvasCanvas canvas(bmp.GetCanvas(), 5, 4);
  HAPICanvas api;
  HControlCanvas control(nullptr);
  EXPECT_EQ("clips 0, pen at 0,0, 1x1, context 1, clip (0,0)-(1,1)", Describe(bitmap)) << "HBitmapCanvas";
  EXPECT_EQ("clips 0, pen at 0,0, 5x4, context 1, clip (0,0)-(5,4)", Describe(canvas)) << "HCanvasCanvas";
  EXPECT_EQ("clips 0, pen at 0,0, 0x0, context 0, clip (0,0)-(0,0)", Describe(api)) << "HAPICanvas, no context";
  EXPECT_EQ("clips 0, pen at 0,0, 0x0, context 0, clip (0,0)-(0,0)", Describe(control)) << "HControlCanvas, no control";
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

// ---- Dashed lines ----

// The dashed LineTo of HCustomCanvas against the way it used to draw: the
// pattern stepped pixel by pixel through GR_LineDDA, a LineTo closing each
// dash and a MoveToEx at every change. Both draw on bitmap canvases and the
// DIBs are compared byte for byte, over lines in every octant and of every
// length, patterns, phases carried from one LineTo to the next, colours and
// clips.

constexpr int kSize = 160;

// The dashed line drawn the old way on canvas c, with c's pen: a thin pen
// as the context's own pen in the line's colour, a wide one recoloured.
class OldDashes {
 public:
  explicit OldDashes(HBitmapCanvas& c) : c_(c) {}

  void MoveTo(int x, int y) {
    MoveToEx(Dc(), x, y, nullptr);
    x_ = x, y_ = y, step_ = 0, down_ = true;
  }

  void LineTo(int x, int y, TColor color) {
    HDC dc = Dc();
    HCustomGDIPen* pen = c_.GetPen();
    const TColor saved = pen->GetColor(), use = color == clDefault ? saved : color;
    if (color == clNone) {
      Walk(x, y, nullptr);
    } else {
      DCChanger change(dc);
      if (pen->GetWidth() <= 1 && pen->GetStyle() == HPS_Solid) {
        change.Select(static_cast<HPEN>(GetStockObject(DC_PEN)));
        change.SetDCPenColor(static_cast<COLORREF>(ColorToRGB(use)) & 0xFFFFFF);
      } else {
        pen->SetColor(use);
        pen->Select(dc);
      }
      Walk(x, y, dc);
      change.Restore();
      pen->SetColor(saved);
    }
    MoveToEx(Dc(), x, y, nullptr);
    x_ = x, y_ = y;
  }

 private:
  // Steps the pattern along the line inside the clip, drawing on dc (when
  // given) each dash that ends, and the last one to the line's end.
  void Walk(int x, int y, HDC dc) {
    const MyRect clip = c_.CurClip();
    const int before = step_;
    drawOn_ = dc;
    GR_LineDDA(x_, y_, x, y, clip.left, clip.top, clip.right, clip.bottom, HLineDDAProc(this, &OldDashes::Step));
    drawOn_ = nullptr;
    if (dc && step_ != before && down_) ::LineTo(dc, x, y);
  }

  void Step(int x, int y) {
    const bool on = c_.GetPen()->GetPatternBits()[step_++ % c_.GetPen()->GetPatternLength()];
    if (on == down_) return;
    if (drawOn_ && down_) ::LineTo(drawOn_, x, y);
    if (drawOn_) MoveToEx(drawOn_, x, y, nullptr);
    x_ = x, y_ = y, down_ = on;
  }

  HDC Dc() { return static_cast<HDC>(c_.GetHandle()); }

  HBitmapCanvas& c_;
  HDC drawOn_ = nullptr;
  int x_ = 0, y_ = 0, step_ = 0;
  bool down_ = false;  // as a fresh canvas: no MoveTo yet
};

// One drawing step: a MoveTo, or a LineTo in a colour.
struct Op {
  bool move;
  int x, y;
  TColor color;
};

template <class... T>
std::string Str(const T&... parts) {
  std::ostringstream s;
  (s << ... << parts);
  return s.str();
}

struct Pair {
  HBitmapCanvas fast, old;
  Pair() { fast.Resize(kSize, kSize), old.Resize(kSize, kSize); }
};

const uint32_t* Bits(HBitmapCanvas& c) {
  c.GetHandle();  // makes the DIB
  GdiFlush();
  return static_cast<const uint32_t*>(c.GetDib()->GetData());
}

// Draws ops on both canvases (fresh pens like `pen`, a silver ground, the
// clip unless all zero, the mix mode) and compares the pixels and the
// context's position.
void Check(Pair& p, const std::string& name, HGDIPen& pen, const MyRect& clip, const std::vector<Op>& ops, int rop) {
  for (HBitmapCanvas* c : {&p.fast, &p.old}) {
    c->SetPen(&pen);
    std::fill_n(const_cast<uint32_t*>(Bits(*c)), kSize * kSize, 0xC0C0C0u);
    if (!(clip == MyRect{})) c->AddClip(clip);
    SetROP2(static_cast<HDC>(c->GetHandle()), rop);
  }
  OldDashes old(p.old);
  for (const Op& op : ops) {
    op.move ? p.fast.MoveTo(op.x, op.y) : p.fast.LineTo(op.x, op.y, op.color);
    op.move ? old.MoveTo(op.x, op.y) : old.LineTo(op.x, op.y, op.color);
  }
  POINT fastPos{}, oldPos{};
  GetCurrentPositionEx(static_cast<HDC>(p.fast.GetHandle()), &fastPos);
  GetCurrentPositionEx(static_cast<HDC>(p.old.GetHandle()), &oldPos);
  EXPECT_EQ(Str(oldPos.x, ",", oldPos.y), Str(fastPos.x, ",", fastPos.y)) << name << ": context position";
  const uint32_t *got = Bits(p.fast), *want = Bits(p.old), *end = got + kSize * kSize;
  const auto [g, w] = std::mismatch(got, end, want);
  if (g != end)
    ADD_FAILURE() << name << ": pixel (" << (g - got) % kSize << "," << kSize - 1 - (g - got) / kSize << ") is "
                  << std::hex << *g << ", expected " << *w;
  for (HBitmapCanvas* c : {&p.fast, &p.old})
    while (c->GetClipCount() > 0) c->RestoreClip();
}

TEST(HCustomCanvas, DashedLinesMatchThePixelByPixelWalk) {
  Pair p;
  const char* patterns[] = {"1,1", "5,3", "2,2,1,3", "3,1", "1,4", "7,1,1,1", "40,20", "2"};
  const MyRect clips[] = {
      {},                  // none (all zero): the whole canvas
      {30, 30, 120, 120},  // lines leave it and enter it
      {78, 0, 82, 160},    // a narrow column
      {50, 50, 50, 100},   // one pixel wide (clip edges are inclusive)
  };
  const int ds[] = {-75, -17, -9, -3, -2, -1, 0, 1, 2, 5, 13, 41, 76};
  // Chains: the pattern goes on where the last LineTo stopped, through other
  // colours and an undrawn (clNone) stretch; a LineTo with no MoveTo before
  // it starts with the pen up; the last draws more dashes than one batch.
  const TColor D = clDefault;
  // clang-format off
  const std::vector<Op> chains[] = {
      {{true, 10, 10, D}, {false, 37, 12, D}, {false, 100, 125, clRed}, {false, 12, 140, D}, {false, 11, 9, clLime}},
      {{true, 150, 5, D}, {false, 50, 50, clNone}, {false, 5, 60, D}, {false, 6, 61, D}, {false, 6, 61, D},
       {false, 140, 150, clNone}, {false, 94, 3, clRed}},
      {{false, 70, 33, D}, {false, 20, 90, clRed}},
      {{true, 80, 80, D}, {false, 81, 80, D}, {false, 81, 81, D}, {false, 80, 81, D}, {false, 80, 79, D},
       {false, 84, 79, D}},
      {{true, 2, 2, D}, {false, 157, 150, D}, {false, 3, 158, clRed}},
  };
  // clang-format on
  for (const char* pattern : patterns)
    for (auto [width, round] : {std::pair{1, false}, std::pair{0, false}, std::pair{3, false}, std::pair{3, true}})
      for (const MyRect& clip : clips) {
        HGDIPen pen;
        pen.SetPattern(pattern);
        pen.SetWidth(width);
        pen.SetRoundEnd(round);
        pen.SetColor(clBlue);
        const std::string prefix =
            Str("pattern ", pattern, " width ", width, round ? " round" : "", " clip ", clip, " ");
        // Single lines in every octant and of many lengths, from the middle
        // and from a corner outside the clips.
        for (int dx : ds)
          for (int dy : ds)
            for (auto [x0, y0] : {std::pair{80, 80}, std::pair{4, 150}})
              Check(p, prefix + Str("(", x0, ",", y0, ")->(", x0 + dx, ",", y0 + dy, ")"), pen, clip,
                    {{true, x0, y0, D}, {false, x0 + dx, y0 + dy, D}}, R2_COPYPEN);
        // Chains again with a mix mode where what dashes overlap shows.
        for (int rop : {R2_COPYPEN, R2_XORPEN})
          for (size_t n = 0; n < std::size(chains); ++n) {
            Pair fresh;  // the canvases' state as constructed, for a chain without a MoveTo
            Check(chains[n].front().move ? p : fresh, prefix + Str(rop == R2_XORPEN ? "xor " : "", "chain ", n), pen,
                  clip, chains[n], rop);
          }
        if (HasFailure()) return;
      }
}

}  // namespace
