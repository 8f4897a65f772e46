// The dashed LineTo of HCustomCanvas against the way it used to draw: the
// pattern stepped pixel by pixel through GR_LineDDA, a LineTo closing each
// dash and a MoveToEx at every change. Both draw on bitmap canvases and the
// DIBs are compared byte for byte, over lines in every octant and of every
// length, patterns, phases carried from one LineTo to the next, colours and
// clips.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "platform/ostrel/dc_changer.h"
#include "tests/velkin/draw/draw_pixels.h"
#include "velkin/gdi/gdi_lines.h"

using namespace Graphics;

namespace {

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

}  // namespace

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

// The stepper's pixels by step are those its walk (GR_LineDDA) visits, for
// short lines and for lines across the whole coordinate range.
TEST(HLineSteps, StepsAreThePixelsOfTheWalk) {
  struct Walked {
    std::vector<MyPoint> points;
    void Add(int x, int y) { points.push_back(MyPoint{x, y}); }
  };
  std::mt19937 random(11);
  std::uniform_int_distribution<int> coord(-70, 70);
  std::vector<std::pair<MyRect, MyRect>> cases;
  for (int i = 0; i < 300; ++i)
    cases.push_back(
        {MyRect{coord(random), coord(random), coord(random), coord(random)},
         MyRect{coord(random) / 2 - 20, coord(random) / 2 - 20, coord(random) / 2 + 20, coord(random) / 2 + 20}});
  const int big = 2000000000;
  const size_t firstBig = cases.size();
  cases.push_back({MyRect{-big, -big, big, big - 7}, MyRect{-5, -5, 5, 5}});
  cases.push_back({MyRect{big, -big + 1, -big, big}, MyRect{-3, -8, 4, 8}});
  cases.push_back({MyRect{-big, 1, big, -1}, MyRect{-big, -1, -big + 6, 2}});
  cases.push_back({MyRect{-big, -big, -big + 1, big}, MyRect{-big, big - 5, -big + 2, big}});
  for (size_t k = 0; k < cases.size(); ++k) {
    const auto& [l, clip] = cases[k];
    const HLineSteps steps(l.left, l.top, l.right, l.bottom, clip.left, clip.top, clip.right, clip.bottom);
    Walked walked;
    steps.ForEach(HLineDDAProc(&walked, &Walked::Add));
    std::vector<MyPoint> byStep;
    for (int64_t i = steps.GetFirst(); i < steps.GetEnd(); ++i) byStep.push_back(steps.At(i));
    const std::string what =
        Line(l.left, l.top, l.right, l.bottom) + " clip " + Line(clip.left, clip.top, clip.right, clip.bottom);
    if (k >= firstBig) {
      EXPECT_FALSE(byStep.empty()) << what << ": crosses the clip";
    }
    EXPECT_TRUE(byStep == walked.points) << what << ": " << byStep.size() << " pixels by step, " << walked.points.size()
                                         << " walked";
  }
}
