// The drawing routines on an HBitmapCanvas beside plain GDI drawing the same
// lines on the same DIB, measured in one run:
//  - TC_Border (two-colour sunken and one-colour single, four sides);
//  - TC_Box (raised frame with its fill, and the outlined button);
//  - the patterned LineTo (the dash pattern over the line's pixels).
// Each pair is checked to give the same pixels before it is timed.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>
#include <vector>

#include "bench/bench_clock.h"
#include "platform/ostrel/owned_handle.h"
#include "velkin/draw/gdi_canvas_bitmap.h"
#include "velkin/draw/tc_draw.h"

using namespace Graphics;

namespace {

constexpr int kSize = 256;

// Nanoseconds per iteration of body, timed once.
double Time(int iterations, const std::function<void(int)>& body) {
  const double start = Now();
  for (int i = 0; i < iterations; ++i) body(i);
  GdiFlush();
  return (Now() - start) * 1e9 / iterations;
}

// Best of several rounds for each, the two taking turns so that a busy moment
// of the machine falls on both alike.
void Measure(int iterations, const std::function<void(int)>& a, const std::function<void(int)>& b, double& ta,
             double& tb) {
  ta = tb = 1e30;
  for (int round = 0; round < 15; ++round) {
    ta = std::min(ta, Time(iterations, a));
    tb = std::min(tb, Time(iterations, b));
  }
}

// Pixels of the canvas after clearing it and drawing once.
std::vector<uint32_t> Snapshot(HBitmapCanvas& c, const std::function<void()>& draw) {
  c.Fill(MyRect{0, 0, kSize, kSize}, clSilver);
  draw();
  GdiFlush();
  const auto* bits = static_cast<const uint32_t*>(c.GetDib()->GetData());
  return std::vector<uint32_t>(bits, bits + kSize * kSize);
}

int failures = 0;

// Plain GDI puts the pen it displaced back when it is done, as polite code
// does (the canvas's own pen, which the canvas expects to find there).
void Row(const char* what, const char* baseline, HBitmapCanvas& c, int n, const std::function<void(int)>& ours,
         const std::function<void(int)>& plain, const char* target = "") {
  HDC dc = static_cast<HDC>(c.GetHandle());
  HGDIOBJ own = GetCurrentObject(dc, OBJ_PEN);
  const std::function<void(int)> base = [&](int i) {
    plain(i);
    SelectObject(dc, own);
  };
  const bool same = Snapshot(c, [&] { ours(0); }) == Snapshot(c, [&] { base(0); });
  if (!same) ++failures;
  double a, b;
  Measure(n, ours, base, a, b);
  std::printf("%-30s %9.0f ns   %-30s %9.0f ns   ratio %5.2fx   %s%s\n", what, a, baseline, b, a / b, target,
              same ? "" : "   PIXELS DIFFER");
}

// Plain GDI: one line with a pen from the table, end point excluded.
struct Plain {
  HDC dc;
  OwnedPen white{CreatePen(PS_SOLID, 1, RGB(255, 255, 255))};
  OwnedPen grey{CreatePen(PS_SOLID, 1, RGB(128, 128, 128))};
  OwnedPen red{CreatePen(PS_SOLID, 1, RGB(255, 0, 0))};
  OwnedPen black{CreatePen(PS_SOLID, 1, RGB(0, 0, 0))};
  OwnedBrush redBrush{CreateSolidBrush(RGB(255, 0, 0))};
  void Line(const OwnedPen& pen, int x1, int y1, int x2, int y2) {
    SelectObject(dc, pen.get());
    MoveToEx(dc, x1, y1, nullptr);
    LineTo(dc, x2, y2);
  }
};

}  // namespace

int main() {
  HBitmapCanvas c;
  c.Resize(kSize, kSize);
  HDC dc = static_cast<HDC>(c.GetHandle());
  Plain p{dc};
  HGDIOBJ original = GetCurrentObject(dc, OBJ_PEN);
  const int n = 5000;
  std::printf("Drawing routines on an HBitmapCanvas against plain GDI on the same DIB\n");
  std::printf("(best of 15 alternating rounds, %d iterations each; plain GDI with its pens made beforehand)\n\n", n);

  const MyRect r{10, 10, 200, 120};
  const TC_Sides all{Controls::alTop, Controls::alBottom, Controls::alLeft, Controls::alRight};
  Row(
      "TC_Border sunken, 4 sides", "8 lines, 2 pens", c, n, [&](int) { TC_Border(&c, r, HBRD_Lowered, all, clNone); },
      [&](int) {
        // Sides top, bottom, left, right; grey outside, white inside.
        p.Line(p.grey, r.left, r.top, r.right, r.top);
        p.Line(p.white, r.left, r.top + 1, r.right, r.top + 1);
        p.Line(p.white, r.left, r.bottom - 2, r.right, r.bottom - 2);
        p.Line(p.grey, r.left, r.bottom - 1, r.right, r.bottom - 1);
        p.Line(p.grey, r.left, r.top, r.left, r.bottom);
        p.Line(p.white, r.left + 1, r.top, r.left + 1, r.bottom);
        p.Line(p.white, r.right - 2, r.top, r.right - 2, r.bottom);
        p.Line(p.grey, r.right - 1, r.top, r.right - 1, r.bottom);
      });
  Row(
      "TC_Border single, 4 sides", "4 lines, 1 pen", c, n, [&](int) { TC_Border(&c, r, HBRD_Single, all, clRed); },
      [&](int) {
        p.Line(p.red, r.left, r.top, r.right, r.top);
        p.Line(p.red, r.left, r.bottom - 1, r.right, r.bottom - 1);
        p.Line(p.red, r.left, r.top, r.left, r.bottom);
        p.Line(p.red, r.right - 1, r.top, r.right - 1, r.bottom);
      });
  const MyRect b{20, 140, 120, 180};
  Row(
      "TC_Box raised (fill + frame)", "FillRect + 4 lines", c, n, [&](int) { TC_Box(&c, b, clRed, HBOX_Raised); },
      [&](int) {
        const RECT inner{b.left + 1, b.top + 1, b.right - 1, b.bottom - 1};
        FillRect(dc, &inner, p.redBrush.get());
        SelectObject(dc, p.white.get());
        MoveToEx(dc, b.left, b.bottom - 1, nullptr);
        LineTo(dc, b.left, b.top);
        LineTo(dc, b.right - 1, b.top);
        SelectObject(dc, p.grey.get());
        LineTo(dc, b.right - 1, b.bottom - 1);
        LineTo(dc, b.left, b.bottom - 1);
      });
  Row(
      "TC_Box button (fill + 2 rings)", "FillRect + 8 lines", c, n, [&](int) { TC_Box(&c, b, clRed, HBOX_Button); },
      [&](int) {
        const RECT inner{b.left + 2, b.top + 2, b.right - 2, b.bottom - 2};
        FillRect(dc, &inner, p.redBrush.get());
        SelectObject(dc, p.black.get());
        MoveToEx(dc, b.left, b.top, nullptr);
        LineTo(dc, b.right - 1, b.top);
        LineTo(dc, b.right - 1, b.bottom - 1);
        LineTo(dc, b.left, b.bottom - 1);
        LineTo(dc, b.left, b.top);
        SelectObject(dc, p.white.get());
        MoveToEx(dc, b.left + 1, b.bottom - 2, nullptr);
        LineTo(dc, b.left + 1, b.top + 1);
        LineTo(dc, b.right - 2, b.top + 1);
        SelectObject(dc, p.grey.get());
        LineTo(dc, b.right - 2, b.bottom - 2);
        LineTo(dc, b.left + 1, b.bottom - 2);
      });

  // A dashed diagonal: the canvas steps the pattern pixel by pixel; plain GDI
  // draws the same dashes, found beforehand, as separate lines.
  HGDIPen dashed;
  dashed.SetPattern("5,3");
  dashed.SetColor(clBlack);
  c.SetPen(&dashed);
  struct Dash {
    int x1, y1, x2, y2;
  };
  std::vector<Dash> dashes;
  {
    std::vector<POINT> pts;
    LineDDA(
        5, 200, 250, 240,
        [](int x, int y, LPARAM data) {
          reinterpret_cast<std::vector<POINT>*>(data)->push_back({x, y});
        },
        reinterpret_cast<LPARAM>(&pts));
    for (size_t i = 0; i < pts.size(); i += 8) {
      const size_t end = std::min(i + 5, pts.size());
      const POINT stop = end < pts.size() ? pts[end] : POINT{250, 240};
      dashes.push_back({pts[i].x, pts[i].y, stop.x, stop.y});
    }
  }
  Row(
      "patterned LineTo, 245 px", "the same dashes as lines", c, n / 4,
      [&](int) {
        c.MoveTo(5, 200);
        c.LineTo(250, 240);
      },
      [&](int) {
        SelectObject(dc, p.black.get());
        for (const Dash& d : dashes) {
          MoveToEx(dc, d.x1, d.y1, nullptr);
          LineTo(dc, d.x2, d.y2);
        }
      },
      "target <= 1.30x");
  HGDIPen solid;
  c.SetPen(&solid);
  Row(
      "solid LineTo, 245 px", "one LineTo", c, n,
      [&](int) {
        c.MoveTo(5, 200);
        c.LineTo(250, 240, clRed);
      },
      [&](int) { p.Line(p.red, 5, 200, 250, 240); });

  SelectObject(dc, original);  // none of the plain pens stays selected when they go
  if (failures) std::printf("\n%d comparisons drew different pixels\n", failures);
  return failures ? 1 : 0;
}
