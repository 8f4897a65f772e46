// Window captions: which part a point hits, where the buttons and the text go,
// and what is drawn there.
#include <gtest/gtest.h>

#include "platform/vcl/graphics/canvas.h"
#include "tests/velkin/draw/draw_pixels.h"
#include "velkin/draw/h_extdraw.h"

using namespace draw_pixels;
using namespace Controls;

namespace {

constexpr uint32_t kGreen = 0x00FF00;  // the ground

// A framework canvas over a DIB prefilled with green.
struct Painted : Surface {
  Painted(int w, int h) : Surface(w, h, kGreen) { canvas.SetHandle(Dc()); }
  ~Painted() { canvas.SetHandle(nullptr); }
  Graphics::TCanvas canvas;
};

bool In(const MyRect& r, int x, int y) { return x >= r.left && x < r.right && y >= r.top && y < r.bottom; }

// Each point (x, y pairs) hits `expected`.
void CheckHits(const MyRect& bar, const HCaptionTypes& parts, TAlign align, int expected,
               std::initializer_list<int> xy) {
  for (auto p = xy.begin(); p != xy.end(); p += 2)
    EXPECT_EQ(TC_WinCaptionHitTest(bar, parts, align, MyPoint{p[0], p[1]}), expected)
        << "bar " << bar << ", align " << int(align) << ", point (" << p[0] << "," << p[1] << ")";
}

// Buttons from the end, the text area, the margins and outside; the layout.
TEST(HExtDrawCaptionHitTest, ButtonsTextMarginsAndLayout) {
  const MyRect bar{0, 0, 200, 20};
  const HCaptionTypes parts{HCT_Caption, HCT_Minimize, HCT_Close};
  // The close button's first and last pixels, buttons touching, the text
  // area, the right, top and bottom margins, outside.
  for (TAlign a : {alTop, alBottom}) {
    CheckHits(bar, parts, a, HCT_Close, {190, 10, 181, 2, 197, 17});
    CheckHits(bar, parts, a, HCT_Minimize, {180, 10, 164, 10});
    CheckHits(bar, parts, a, HCT_Caption, {163, 10, 199, 10, 190, 1, 190, 18});
    CheckHits(bar, parts, a, 0, {200, 10, 100, 20, -1, 10, 100, -1});
  }
  // Without the caption part only buttons are found.
  CheckHits(bar, HCaptionTypes{HCT_Minimize, HCT_Close}, alTop, 0, {100, 10, 199, 10});
  CheckHits(MyRect{50, 30, 250, 50}, parts, alTop, HCT_Close, {240, 40, 231, 32});
  CheckHits(MyRect{50, 30, 250, 50}, parts, alTop, HCT_Minimize, {230, 40});

  const HCaptionTypes all{HCT_Help, HCT_Minimize, HCT_Maximize, HCT_Restore, HCT_Close, HCT_Caption};
  const HCaptionLayout l = TC_WinCaptionLayout(bar, all, alTop);
  const HCaptionType order[5] = {HCT_Close, HCT_Restore, HCT_Maximize, HCT_Minimize, HCT_Help};
  ASSERT_EQ(l.Count, 5);
  for (int i = 0; i < 5; ++i) {
    const MyRect expected{198 - 17 * (i + 1), 2, 198 - 17 * i, 18};
    EXPECT_EQ(l.Button[i], expected) << "button " << i;
    EXPECT_EQ(TC_WinCaptionHitTest(bar, all, alTop, MyPoint{expected.left + 8, 10}), order[i]) << "button " << i;
  }
  EXPECT_EQ(l.Text, (MyRect{2, 2, 113, 18}));
  // A missing button takes no room; no buttons leave the text the whole
  // inner area; more buttons than room leave it empty, not inverted.
  CheckHits(bar, HCaptionTypes{HCT_Close, HCT_Help}, alTop, HCT_Help, {164, 2, 180, 17});
  EXPECT_EQ(TC_WinCaptionLayout(bar, HCaptionTypes{HCT_Caption}, alTop).Text, (MyRect{2, 2, 198, 18}));
  EXPECT_EQ(TC_WinCaptionLayout(MyRect{0, 0, 40, 20}, all, alTop).Text.Width(), 0);

  // A vertical bar stacks the buttons from the top, whatever else its align.
  const MyRect up{0, 0, 20, 200};
  EXPECT_EQ(TC_WinCaptionLayout(up, HCaptionTypes{HCT_Close}, alLeft).Text, (MyRect{2, 19, 18, 198}));
  for (TAlign a : {alLeft, alRight, alNone, alClient}) {
    const HCaptionTypes ccm{HCT_Caption, HCT_Close, HCT_Maximize};
    CheckHits(up, ccm, a, HCT_Close, {10, 2, 10, 18});
    CheckHits(up, ccm, a, HCT_Maximize, {10, 19, 10, 35});
    CheckHits(up, ccm, a, HCT_Caption, {10, 36, 10, 1, 1, 10, 18, 10});
    CheckHits(up, ccm, a, 0, {20, 10, 10, 200});
  }
}

TEST(HExtDrawCaptionDraw, ButtonsAndFillFollowTheGeometry) {
  for (UINT state : {0u, UINT(DFCS_PUSHED | DFCS_FLAT | DFCS_INACTIVE)})
    for (TAlign align : {alTop, alLeft}) {
      SCOPED_TRACE(testing::Message() << "state 0x" << std::hex << state << ", align " << int(align));
      const MyRect bar = align == alTop ? MyRect{10, 5, 210, 25} : MyRect{5, 10, 25, 210};
      const HCaptionTypes parts = HCaptionTypes{HCT_Fill, HCT_Caption, HCT_Close, HCT_Minimize, HCT_Help} +
                                  (state ? HCaptionTypes{HCT_Pushed, HCT_Flat, HCT_Inactive} : HCaptionTypes{});
      Painted s(220, 220);
      s.canvas.GetBrush()->SetColor(Graphics::clRed);
      TC_WinCaptionDraw(&s.canvas, bar, parts, "", align, true);
      // Each button as the platform draws it, the rest of the bar in the
      // brush colour, nothing outside.
      Surface ref(220, 220, kGreen);
      HCaptionLayout l = TC_WinCaptionLayout(bar, parts, align);
      ASSERT_EQ(l.Count, 3);
      const UINT kinds[3] = {DFCS_CAPTIONCLOSE, DFCS_CAPTIONMIN, DFCS_CAPTIONHELP};
      for (int i = 0; i < 3; ++i)
        DrawFrameControl(ref.Dc(), reinterpret_cast<RECT*>(&l.Button[i]), DFC_CAPTION, kinds[i] | state);
      const Reader expected = [&](int x, int y) -> uint32_t {
        for (int i = 0; i < 3; ++i)
          if (In(l.Button[i], x, y)) return ref.At(x, y);
        return In(bar, x, y) ? 0xFF0000 : kGreen;
      };
      EXPECT_EQ(Diff(s.Read(), expected, 220, 220), "");
    }
}

// Text lands in the text area in the font colour, or the inactive caption
// text colour.
TEST(HExtDrawCaptionDraw, TextInTheTextArea) {
  for (bool active : {true, false})
    for (TAlign align : {alTop, alRight}) {
      SCOPED_TRACE(testing::Message() << (active ? "active" : "inactive") << ", align " << int(align));
      const MyRect b = align == alTop ? MyRect{0, 0, 200, 20} : MyRect{0, 0, 20, 200};
      Painted s(200, 200);
      s.canvas.GetFont()->SetColor(Graphics::clBlue);
      TC_WinCaptionDraw(&s.canvas, b, HCaptionTypes{HCT_Close}, "Wg Wg Wg", align, active);
      const HCaptionLayout l = TC_WinCaptionLayout(b, HCaptionTypes{HCT_Close}, align);
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
