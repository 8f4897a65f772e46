#include <gtest/gtest.h>

#include <windows.h>

#include "platform/vcl/graphics_canvas.h"
#include "tests/velkin/draw/extdraw_dib.h"
#include "velkin/draw/h_extdraw.h"

using Controls::alBottom;
using Controls::alLeft;
using Controls::alRight;
using Controls::alTop;
using Graphics::TCanvas;
using testdib::Dib;
using testdib::DibPixel;

namespace {

constexpr uint32_t kGreen = 0x00FF00;  // DIB order, background

// A canvas drawing on a DIB prefilled with green.
struct Surface {
  Surface(int w, int h) : dib(w, h) {
    dib.Fill(kGreen);
    canvas.SetHandle(dib.dc());
  }
  ~Surface() { canvas.SetHandle(nullptr); }
  Dib dib;
  TCanvas canvas;
};

// Pixels of rect r in a and b are the same; reports the first that is not.
::testing::AssertionResult SameArea(const Dib& a, const Dib& b, const MyRect& r) {
  for (int y = r.top; y < r.bottom; ++y)
    for (int x = r.left; x < r.right; ++x)
      if (a.At(x, y) != b.At(x, y))
        return ::testing::AssertionFailure()
               << "pixel (" << x << "," << y << ") is 0x" << std::hex << a.At(x, y) << ", expected 0x" << b.At(x, y);
  return ::testing::AssertionSuccess();
}

// What DrawFrameControl alone paints for a caption button.
void Reference(Dib& d, const MyRect& r, UINT kind) {
  RECT rc{r.left, r.top, r.right, r.bottom};
  DrawFrameControl(d.dc(), &rc, DFC_CAPTION, kind);
}

TEST(HExtDrawCaptionDraw, ButtonsAndFillFollowTheGeometry) {
  struct Variant {
    HCaptionTypes extra;
    UINT state;
  } variants[] = {{{}, 0},
                  {{hctPushed}, DFCS_PUSHED},
                  {{hctInactive}, DFCS_INACTIVE},
                  {{hctFlat}, DFCS_FLAT},
                  {{hctPushed, hctFlat, hctInactive}, DFCS_PUSHED | DFCS_FLAT | DFCS_INACTIVE}};
  for (const Variant& v : variants) {
    for (Controls::TAlign align : {alTop, alLeft}) {
      SCOPED_TRACE(testing::Message() << "state 0x" << std::hex << v.state << ", align " << int(align));
      const MyRect bar = align == alTop ? MyRect{10, 5, 210, 25} : MyRect{5, 10, 25, 210};
      const HCaptionTypes parts = HCaptionTypes{hctFill, hctCaption, hctClose, hctMinimize, hctHelp} + v.extra;
      Surface s(220, 220);
      s.canvas.GetBrush()->SetColor(Graphics::clRed);
      TC_WinCaptionDraw(&s.canvas, bar, parts, "", align, true);

      Dib ref(220, 220);
      ref.Fill(kGreen);
      const HCaptionLayout l = TC_WinCaptionLayout(bar, parts, align);
      ASSERT_EQ(l.Count, 3);
      const UINT kinds[3] = {DFCS_CAPTIONCLOSE, DFCS_CAPTIONMIN, DFCS_CAPTIONHELP};
      for (int i = 0; i < 3; ++i) {
        Reference(ref, l.Button[i], kinds[i] | v.state);
        EXPECT_TRUE(SameArea(s.dib, ref, l.Button[i])) << "button " << i;
      }
      // The rest of the bar is the brush colour, outside it untouched.
      const uint32_t red = DibPixel(0x0000FF);
      EXPECT_EQ(s.dib.At(bar.left, bar.top), red);
      EXPECT_EQ(s.dib.At(bar.right - 1, bar.bottom - 1), red);
      EXPECT_EQ(s.dib.At((l.Text.left + l.Text.right) / 2, (l.Text.top + l.Text.bottom) / 2), red);
      EXPECT_EQ(s.dib.At(bar.left - 1, bar.top), kGreen);
      EXPECT_EQ(s.dib.At(bar.right, bar.bottom - 1), kGreen);
      EXPECT_EQ(s.dib.At(bar.left, bar.bottom), kGreen);
    }
  }
}

TEST(HExtDrawCaptionDraw, BackgroundAndTextOptions) {
  const MyRect bar{0, 0, 200, 20};
  {
    // Without a fill part the background stays; the edge part paints the rim.
    Surface s(200, 20);
    s.canvas.GetBrush()->SetColor(Graphics::clRed);
    TC_WinCaptionDraw(&s.canvas, bar, HCaptionTypes{hctClose, hctEdge}, "", alTop, true);
    EXPECT_EQ(s.dib.At(100, 10), kGreen);
    EXPECT_EQ(s.dib.At(100, 0), DibPixel(GetSysColor(COLOR_BTNHIGHLIGHT))) << "top edge";
    EXPECT_EQ(s.dib.At(100, 19), DibPixel(GetSysColor(COLOR_BTNSHADOW))) << "bottom edge";
  }
  {
    // The gradient runs from the brush colour to the button face.
    Surface s(200, 20);
    s.canvas.GetBrush()->SetColor(Graphics::clBlack);
    TC_WinCaptionDraw(&s.canvas, bar, HCaptionTypes{hctFill, hctGradient}, "", alTop, true);
    EXPECT_EQ(s.dib.At(0, 10), 0u);
    EXPECT_EQ(s.dib.At(199, 10), DibPixel(GetSysColor(COLOR_BTNFACE)));
    const uint32_t mid = s.dib.At(100, 10);
    EXPECT_TRUE(mid != 0 && mid != DibPixel(GetSysColor(COLOR_BTNFACE))) << std::hex << mid;
  }
  // Text lands in the text area in the font colour, or the inactive caption
  // text colour.
  for (bool active : {true, false}) {
    for (Controls::TAlign align : {alTop, alRight}) {
      SCOPED_TRACE(testing::Message() << (active ? "active" : "inactive") << ", align " << int(align));
      const MyRect b = align == alTop ? bar : MyRect{0, 0, 20, 200};
      Surface s(200, 200);
      s.canvas.GetFont()->SetColor(Graphics::clBlue);
      TC_WinCaptionDraw(&s.canvas, b, HCaptionTypes{hctClose}, "Wg Wg Wg", align, active);
      const HCaptionLayout l = TC_WinCaptionLayout(b, HCaptionTypes{hctClose}, align);
      const uint32_t ink = active ? DibPixel(0xFF0000) : DibPixel(GetSysColor(COLOR_INACTIVECAPTIONTEXT));
      int inText = 0, stray = 0;
      for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 200; ++x) {
          const uint32_t p = s.dib.At(x, y);
          const bool inside = x >= l.Text.left && x < l.Text.right && y >= l.Text.top && y < l.Text.bottom;
          const bool onButton =
              x >= l.Button[0].left && x < l.Button[0].right && y >= l.Button[0].top && y < l.Button[0].bottom;
          if (inside && p == ink) ++inText;
          if (!inside && !onButton && p != kGreen) ++stray;
        }
      EXPECT_GT(inText, 10) << "too few text pixels in the text colour";
      EXPECT_EQ(stray, 0) << "pixels painted outside the text area and the button";
    }
  }
}

TEST(HExtDrawDecorations, ArrowShapeAndDirections) {
  for (int size : {1, 2, 4}) {
    SCOPED_TRACE(testing::Message() << "size " << size);
    const int across = 2 * size - 1;
    struct Dir {
      Controls::TAlign align;
      int boxW, boxH;  // bounding box
      int tipX, tipY;  // relative to (x, y)
    } dirs[] = {{alBottom, across, size, size - 1, size - 1},
                {alTop, across, size, size - 1, 0},
                {alRight, size, across, size - 1, size - 1},
                {alLeft, size, across, 0, size - 1}};
    for (const Dir& d : dirs) {
      Surface s(20, 20);
      TC_DrawArrow(&s.canvas, 5, 6, size, Graphics::clRed, d.align);
      int count = 0, outside = 0;
      for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 20; ++x)
          if (s.dib.At(x, y) != kGreen) {
            ++count;
            if (x < 5 || x >= 5 + d.boxW || y < 6 || y >= 6 + d.boxH) ++outside;
          }
      EXPECT_EQ(count, size * size) << "align " << int(d.align);
      EXPECT_EQ(outside, 0) << "align " << int(d.align);
      EXPECT_EQ(s.dib.At(5 + d.tipX, 6 + d.tipY), DibPixel(0x0000FF)) << "tip, align " << int(d.align);
    }
  }
}

TEST(HExtDrawDecorations, PanelStaysInsideWithFrameAndArrow) {
  // The panel paints exactly its rectangle, framed raised or sunken.
  for (bool pushed : {false, true})
    for (Controls::TAlign a : {alTop, alBottom, alLeft, alRight, Controls::alNone}) {
      SCOPED_TRACE(testing::Message() << "align " << int(a) << (pushed ? " pushed" : ""));
      Surface p(80, 80);
      const MyRect r = (a == alLeft || a == alRight) ? MyRect{30, 5, 40, 75} : MyRect{5, 30, 75, 40};
      TC_DrawNSPanel(&p.canvas, r, Graphics::clSilver, a, pushed);
      int outside = 0, arrow = 0;
      for (int y = 0; y < 80; ++y)
        for (int x = 0; x < 80; ++x) {
          const bool in = x >= r.left && x < r.right && y >= r.top && y < r.bottom;
          const uint32_t c = p.dib.At(x, y);
          if (!in && c != kGreen) ++outside;
          if (in && c == kGreen) ++outside;
          if (in && c == DibPixel(GetSysColor(COLOR_BTNTEXT))) ++arrow;
        }
      EXPECT_EQ(outside, 0);
      const uint32_t tl = p.dib.At(r.left, r.top), br = p.dib.At(r.right - 1, r.bottom - 1);
      EXPECT_EQ(tl, pushed ? 0x808080u : 0xFFFFFFu) << "top-left corner";
      EXPECT_EQ(br, pushed ? 0xFFFFFFu : 0x808080u) << "bottom-right corner";
      if (a == Controls::alNone)
        EXPECT_EQ(arrow, 0) << "arrow without a direction";
      else
        EXPECT_GT(arrow, 0) << "no arrow";
    }
}

}  // namespace
