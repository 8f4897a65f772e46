#include <gtest/gtest.h>

#include <array>

#include "platform/vcl/graphics_canvas.h"
#include "tests/velkin/draw/draw_pixels.h"
#include "velkin/draw/h_extdraw.h"

using namespace draw_pixels;
using Controls::alBottom;
using Controls::alLeft;
using Controls::alRight;
using Controls::alTop;

static std::ostream& operator<<(std::ostream& os, const MyRect& r) {
  return os << "(" << r.left << "," << r.top << ")-(" << r.right << "," << r.bottom << ")";
}

namespace {

constexpr uint32_t kGreen = 0x00FF00;  // the ground

// A framework canvas over a DIB prefilled with green.
struct Painted : Surface {
  Painted(int w, int h) : Surface(w, h, kGreen) { canvas.SetHandle(Dc()); }
  ~Painted() { canvas.SetHandle(nullptr); }
  Graphics::TCanvas canvas;
};

bool In(const MyRect& r, int x, int y) { return x >= r.left && x < r.right && y >= r.top && y < r.bottom; }

void CheckHits(const MyRect& bar, const HCaptionTypes& parts, Controls::TAlign align,
               std::initializer_list<std::array<int, 3>> probes) {
  for (auto [x, y, expected] : probes)
    EXPECT_EQ(TC_WinCaptionHitTest(bar, parts, align, MyPoint{x, y}), expected)
        << "bar " << bar << ", align " << int(align) << ", point (" << x << "," << y << ")";
}

TEST(HExtDrawCaptionHitTest, HorizontalBar) {
  const MyRect bar{0, 0, 200, 20};
  const HCaptionTypes parts{hctCaption, hctMinimize, hctClose};
  // The close button's first and last pixels, buttons touching, the text
  // area, the right, top and bottom margins, outside.
  CheckHits(bar, parts, alTop,
            {{190, 10, hctClose},
             {181, 2, hctClose},
             {197, 17, hctClose},
             {180, 10, hctMinimize},
             {164, 10, hctMinimize},
             {163, 10, hctCaption},
             {199, 10, hctCaption},
             {190, 1, hctCaption},
             {190, 18, hctCaption},
             {200, 10, 0},
             {100, 20, 0},
             {-1, 10, 0},
             {100, -1, 0}});
  CheckHits(bar, parts, alBottom, {{190, 10, hctClose}, {170, 10, hctMinimize}});
  // Without the caption part only buttons are found.
  CheckHits(bar, HCaptionTypes{hctMinimize, hctClose}, alTop, {{100, 10, 0}, {199, 10, 0}, {190, 10, hctClose}});
  CheckHits(MyRect{50, 30, 250, 50}, parts, alTop, {{240, 40, hctClose}, {231, 32, hctClose}, {230, 40, hctMinimize}});
}

TEST(HExtDrawCaptionHitTest, ButtonOrderAndLayout) {
  const MyRect bar{0, 0, 200, 20};
  const HCaptionTypes all{hctHelp, hctMinimize, hctMaximize, hctRestore, hctClose, hctCaption};
  const HCaptionLayout l = TC_WinCaptionLayout(bar, all, alTop);
  const HCaptionType order[5] = {hctClose, hctRestore, hctMaximize, hctMinimize, hctHelp};
  ASSERT_EQ(l.Count, 5);
  for (int i = 0; i < 5; ++i) {
    const MyRect expected{198 - 17 * (i + 1), 2, 198 - 17 * i, 18};
    EXPECT_EQ(l.Kind[i], order[i]) << "button " << i;
    EXPECT_EQ(l.Button[i], expected) << "button " << i << " actual " << l.Button[i] << " expected " << expected;
    EXPECT_EQ(TC_WinCaptionHitTest(bar, all, alTop, MyPoint{expected.left + 8, 10}), order[i]) << "button " << i;
  }
  EXPECT_EQ(l.Text, (MyRect{2, 2, 113, 18})) << l.Text;
  // A missing button takes no room; no buttons leave the text the whole
  // inner area; more buttons than room leave it empty, not inverted.
  const HCaptionLayout gap = TC_WinCaptionLayout(bar, HCaptionTypes{hctClose, hctHelp}, alTop);
  ASSERT_EQ(gap.Count, 2);
  EXPECT_EQ(gap.Kind[1], hctHelp);
  EXPECT_EQ(gap.Button[1], (MyRect{164, 2, 181, 18})) << gap.Button[1];
  EXPECT_EQ(TC_WinCaptionLayout(bar, HCaptionTypes{hctCaption}, alTop).Text, (MyRect{2, 2, 198, 18}));
  EXPECT_EQ(TC_WinCaptionLayout(MyRect{0, 0, 40, 20}, all, alTop).Text.Width(), 0);
}

TEST(HExtDrawCaptionHitTest, VerticalBar) {
  const MyRect bar{0, 0, 20, 200};
  const HCaptionLayout l = TC_WinCaptionLayout(bar, HCaptionTypes{hctClose}, alLeft);
  ASSERT_EQ(l.Count, 1);
  EXPECT_EQ(l.Button[0], (MyRect{2, 2, 18, 19})) << l.Button[0];
  EXPECT_EQ(l.Text, (MyRect{2, 19, 18, 198})) << l.Text;
  for (Controls::TAlign a : {alLeft, alRight, Controls::alNone, Controls::alClient})
    CheckHits(bar, HCaptionTypes{hctCaption, hctClose, hctMaximize}, a,
              {{10, 2, hctClose},
               {10, 18, hctClose},
               {10, 19, hctMaximize},
               {10, 35, hctMaximize},
               {10, 36, hctCaption},
               {10, 1, hctCaption},
               {1, 10, hctCaption},
               {18, 10, hctCaption},
               {20, 10, 0},
               {10, 200, 0}});
}

TEST(HExtDrawCaptionDraw, ButtonsAndFillFollowTheGeometry) {
  struct {
    HCaptionTypes extra;
    UINT state;
  } variants[] = {{{}, 0},
                  {{hctPushed}, DFCS_PUSHED},
                  {{hctInactive}, DFCS_INACTIVE},
                  {{hctFlat}, DFCS_FLAT},
                  {{hctPushed, hctFlat, hctInactive}, DFCS_PUSHED | DFCS_FLAT | DFCS_INACTIVE}};
  for (const auto& v : variants)
    for (Controls::TAlign align : {alTop, alLeft}) {
      SCOPED_TRACE(testing::Message() << "state 0x" << std::hex << v.state << ", align " << int(align));
      const MyRect bar = align == alTop ? MyRect{10, 5, 210, 25} : MyRect{5, 10, 25, 210};
      const HCaptionTypes parts = HCaptionTypes{hctFill, hctCaption, hctClose, hctMinimize, hctHelp} + v.extra;
      Painted s(220, 220);
      s.canvas.GetBrush()->SetColor(Graphics::clRed);
      TC_WinCaptionDraw(&s.canvas, bar, parts, "", align, true);
      // Each button as the platform draws it, the rest of the bar in the
      // brush colour, nothing outside.
      Surface ref(220, 220, kGreen);
      const HCaptionLayout l = TC_WinCaptionLayout(bar, parts, align);
      ASSERT_EQ(l.Count, 3);
      const UINT kinds[3] = {DFCS_CAPTIONCLOSE, DFCS_CAPTIONMIN, DFCS_CAPTIONHELP};
      for (int i = 0; i < 3; ++i) {
        RECT rc{l.Button[i].left, l.Button[i].top, l.Button[i].right, l.Button[i].bottom};
        DrawFrameControl(ref.Dc(), &rc, DFC_CAPTION, kinds[i] | v.state);
      }
      const Reader expected = [&](int x, int y) -> uint32_t {
        for (int i = 0; i < 3; ++i)
          if (In(l.Button[i], x, y)) return ref.At(x, y);
        return In(bar, x, y) ? 0xFF0000 : kGreen;
      };
      EXPECT_EQ(Diff(s.Read(), expected, 220, 220), "");
    }
}

TEST(HExtDrawCaptionDraw, BackgroundAndTextOptions) {
  const MyRect bar{0, 0, 200, 20};
  Painted edge(200, 20);  // without a fill part the ground stays; the edge part paints the rim
  edge.canvas.GetBrush()->SetColor(Graphics::clRed);
  TC_WinCaptionDraw(&edge.canvas, bar, HCaptionTypes{hctClose, hctEdge}, "", alTop, true);
  EXPECT_EQ(edge.At(100, 10), kGreen);
  EXPECT_EQ(edge.At(100, 0), Px(GetSysColor(COLOR_BTNHIGHLIGHT))) << "top edge";
  EXPECT_EQ(edge.At(100, 19), Px(GetSysColor(COLOR_BTNSHADOW))) << "bottom edge";
  Painted ramp(200, 20);  // the gradient runs from the brush colour to the button face
  ramp.canvas.GetBrush()->SetColor(Graphics::clBlack);
  TC_WinCaptionDraw(&ramp.canvas, bar, HCaptionTypes{hctFill, hctGradient}, "", alTop, true);
  EXPECT_EQ(ramp.At(0, 10), 0u);
  EXPECT_EQ(ramp.At(199, 10), Px(GetSysColor(COLOR_BTNFACE)));
  EXPECT_TRUE(ramp.At(100, 10) != 0 && ramp.At(100, 10) != Px(GetSysColor(COLOR_BTNFACE))) << ramp.At(100, 10);
  // Text lands in the text area in the font colour, or the inactive caption
  // text colour.
  for (bool active : {true, false})
    for (Controls::TAlign align : {alTop, alRight}) {
      SCOPED_TRACE(testing::Message() << (active ? "active" : "inactive") << ", align " << int(align));
      const MyRect b = align == alTop ? bar : MyRect{0, 0, 20, 200};
      Painted s(200, 200);
      s.canvas.GetFont()->SetColor(Graphics::clBlue);
      TC_WinCaptionDraw(&s.canvas, b, HCaptionTypes{hctClose}, "Wg Wg Wg", align, active);
      const HCaptionLayout l = TC_WinCaptionLayout(b, HCaptionTypes{hctClose}, align);
      const uint32_t ink = active ? 0x0000FF : Px(GetSysColor(COLOR_INACTIVECAPTIONTEXT));
      int inText = 0, stray = 0;
      for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 200; ++x) {
          inText += In(l.Text, x, y) && s.At(x, y) == ink;
          stray += !In(l.Text, x, y) && !In(l.Button[0], x, y) && s.At(x, y) != kGreen;
        }
      EXPECT_GT(inText, 10) << "too few text pixels in the text colour";
      EXPECT_EQ(stray, 0) << "pixels painted outside the text area and the button";
    }
}

}  // namespace
