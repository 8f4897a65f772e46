// The canvas over every backing: the same drawing gives the same pixels,
// clips narrow and unwind, the pen slot, dashed lines, ellipses and blits, and
// what a fresh canvas holds.
#include "velkin/draw/gdi_canvas.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "platform/ostrel/dc_changer.h"
#include "platform/vcl/controls.h"
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
    const MyRect clip = c_.CurClip();
    if (color == clNone) {
      GR_LineDDA(x_, y_, x, y, clip.left, clip.top, clip.right, clip.bottom, HLineDDAProc(this, &OldDashes::Step));
    } else {
      const TColor use = color == clDefault ? pen->GetColor() : color, saved = pen->GetColor();
      DCChanger change(dc);
      if (pen->GetWidth() <= 1 && pen->GetStyle() == HPS_Solid) {
        change.Select(static_cast<HPEN>(GetStockObject(DC_PEN)));
        change.SetDCPenColor(static_cast<COLORREF>(ColorToRGB(use)) & 0xFFFFFF);
      } else {
        pen->SetColor(use);
        pen->Select(dc);
      }
      const int before = step_;
      drawOn_ = dc;
      GR_LineDDA(x_, y_, x, y, clip.left, clip.top, clip.right, clip.bottom, HLineDDAProc(this, &OldDashes::Step));
      drawOn_ = nullptr;
      if (step_ != before && down_) ::LineTo(dc, x, y);
      change.Restore();
      pen->SetColor(saved);
    }
    MoveToEx(Dc(), x, y, nullptr);
    x_ = x, y_ = y;
  }

  void Step(int x, int y) {
    const bool on = c_.GetPen()->GetPatternBits()[step_ % c_.GetPen()->GetPatternLength()];
    if (on != down_) {
      if (drawOn_) {
        if (down_) ::LineTo(drawOn_, x, y);
        MoveToEx(drawOn_, x, y, nullptr);
      }
      x_ = x, y_ = y, down_ = on;
    }
    ++step_;
  }

 private:
  HDC Dc() { return static_cast<HDC>(c_.GetHandle()); }

  HBitmapCanvas& c_;
  HDC drawOn_ = nullptr;
  int x_ = 0, y_ = 0, step_ = 0;
  bool down_ = false;  // as a fresh canvas: no MoveTo yet
};

// One drawing step of a row: a MoveTo, or a LineTo in a colour.
struct Op {
  bool move;
  int x, y;
  TColor color;
};

struct Row {
  std::string name;
  const char* pattern;
  int width;
  bool round;
  MyRect clip;  // all zero: no clip
  std::vector<Op> ops;
  int rop = R2_COPYPEN;
};

struct Pair {
  HBitmapCanvas fast, old;
  Pair() {
    fast.Resize(kSize, kSize);
    old.Resize(kSize, kSize);
  }
};

uint8_t* Bits(HBitmapCanvas& c) {
  c.GetHandle();  // makes the DIB
  GdiFlush();
  return static_cast<uint8_t*>(c.GetDib()->GetData());
}

// Draws the row on both canvases (fresh pens, a silver ground) and compares.
void Check(Pair& p, const Row& row) {
  HGDIPen pen;
  pen.SetPattern(row.pattern);
  pen.SetWidth(row.width);
  pen.SetRoundEnd(row.round);
  pen.SetColor(clBlue);
  const size_t bytes = static_cast<size_t>(kSize) * kSize * 4;
  for (HBitmapCanvas* c : {&p.fast, &p.old}) {
    c->SetPen(&pen);
    std::memset(Bits(*c), 0xC0, bytes);
    if (!(row.clip == MyRect{})) c->AddClip(row.clip);
    SetROP2(static_cast<HDC>(c->GetHandle()), row.rop);
  }
  OldDashes old(p.old);
  for (const Op& op : row.ops) {
    if (op.move) {
      p.fast.MoveTo(op.x, op.y);
      old.MoveTo(op.x, op.y);
    } else {
      p.fast.LineTo(op.x, op.y, op.color);
      old.LineTo(op.x, op.y, op.color);
    }
  }
  POINT fastPos{}, oldPos{};
  GetCurrentPositionEx(static_cast<HDC>(p.fast.GetHandle()), &fastPos);
  GetCurrentPositionEx(static_cast<HDC>(p.old.GetHandle()), &oldPos);
  EXPECT_TRUE(fastPos.x == oldPos.x && fastPos.y == oldPos.y)
      << row.name << ": context position (" << fastPos.x << "," << fastPos.y << "), expected (" << oldPos.x << ","
      << oldPos.y << ")";
  const uint8_t *got = Bits(p.fast), *want = Bits(p.old);
  for (size_t i = 0; i < bytes; i += 4)
    if (std::memcmp(got + i, want + i, 4) != 0) {
      const int pixel = static_cast<int>(i / 4), x = pixel % kSize, y = kSize - 1 - pixel / kSize;
      uint32_t g, w;
      std::memcpy(&g, got + i, 4);
      std::memcpy(&w, want + i, 4);
      ADD_FAILURE() << row.name << ": pixel (" << x << "," << y << ") is " << std::hex << g << ", expected " << w;
      break;
    }
  for (HBitmapCanvas* c : {&p.fast, &p.old})
    while (c->GetClipCount() > 0) c->RestoreClip();
}

std::string Name(const char* pattern, int width, bool round, const MyRect& clip, const std::string& what) {
  std::string s = std::string("pattern ") + pattern + " width " + std::to_string(width) + (round ? " round" : "");
  if (clip == MyRect{})
    s += " no clip ";
  else
    s += " clip (" + std::to_string(clip.left) + "," + std::to_string(clip.top) + "," + std::to_string(clip.right) +
         "," + std::to_string(clip.bottom) + ") ";
  return s + what;
}

std::string Line(int x1, int y1, int x2, int y2) {
  return "(" + std::to_string(x1) + "," + std::to_string(y1) + ")->(" + std::to_string(x2) + "," + std::to_string(y2) +
         ")";
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
  for (const char* pattern : patterns)
    for (auto [width, round] : {std::pair{1, false}, std::pair{0, false}, std::pair{3, false}, std::pair{3, true}})
      for (const MyRect& clip : clips) {
        // Single lines in every octant and of many lengths, from the middle
        // and from a corner outside the clips.
        for (int dx : ds)
          for (int dy : ds)
            for (auto [x0, y0] : {std::pair{80, 80}, std::pair{4, 150}}) {
              const Row row{
                  Name(pattern, width, round, clip, Line(x0, y0, x0 + dx, y0 + dy)), pattern, width, round, clip,
                  {{true, x0, y0, clDefault}, {false, x0 + dx, y0 + dy, clDefault}}};
              Check(p, row);
            }
        // Chains: the pattern goes on where the last LineTo stopped, through
        // other colours and an undrawn (clNone) stretch; a LineTo with no
        // MoveTo before it starts with the pen up.
        const std::vector<Op> chains[] = {
            {{true, 10, 10, clDefault},
             {false, 37, 12, clDefault},
             {false, 100, 125, clRed},
             {false, 12, 140, clDefault},
             {false, 11, 9, clLime}},
            {{true, 150, 5, clDefault},
             {false, 50, 50, clNone},
             {false, 5, 60, clDefault},
             {false, 6, 61, clDefault},
             {false, 6, 61, clDefault},
             {false, 140, 150, clNone},
             {false, 94, 3, clRed}},
            {{false, 70, 33, clDefault}, {false, 20, 90, clRed}},
            {{true, 80, 80, clDefault},
             {false, 81, 80, clDefault},
             {false, 81, 81, clDefault},
             {false, 80, 81, clDefault},
             {false, 80, 79, clDefault},
             {false, 84, 79, clDefault}},
            // More dashes than one batch draws.
            {{true, 2, 2, clDefault}, {false, 157, 150, clDefault}, {false, 3, 158, clRed}},
        };
        // Again with a mix mode where what dashes overlap shows.
        for (int rop : {R2_COPYPEN, R2_XORPEN}) {
          int n = 0;
          for (const std::vector<Op>& ops : chains) {
            const std::string what = (rop == R2_XORPEN ? "xor chain " : "chain ") + std::to_string(n++);
            const Row row{Name(pattern, width, round, clip, what), pattern, width, round, clip, ops, rop};
            if (ops.front().move) {
              Check(p, row);
            } else {
              Pair fresh;  // the canvases' state as constructed
              Check(fresh, row);
            }
          }
        }
        if (HasFailure()) return;
      }
}

}  // namespace
