#include <gtest/gtest.h>

#include "velkin/draw/h_extdraw.h"

using Controls::alBottom;
using Controls::alLeft;
using Controls::alRight;
using Controls::alTop;

static std::ostream& operator<<(std::ostream& os, const MyRect& r) {
  return os << "(" << r.left << "," << r.top << ")-(" << r.right << "," << r.bottom << ")";
}

namespace {

struct Probe {
  int x, y, expected;
};

void CheckHits(const MyRect& bar, const HCaptionTypes& parts, Controls::TAlign align, std::initializer_list<Probe> ps) {
  for (const Probe& p : ps) {
    const int got = TC_WinCaptionHitTest(bar, parts, align, MyPoint{p.x, p.y});
    EXPECT_EQ(got, p.expected) << "bar " << bar << ", align " << int(align) << ", point (" << p.x << "," << p.y << ")";
  }
}

TEST(HExtDrawCaptionHitTest, HorizontalBar) {
  const MyRect bar{0, 0, 200, 20};
  const HCaptionTypes parts{hctCaption, hctMinimize, hctClose};
  CheckHits(bar, parts, alTop,
            {{190, 10, hctClose},
             {181, 2, hctClose},      // first pixel of the close button
             {197, 17, hctClose},     // last pixel
             {180, 10, hctMinimize},  // buttons touch
             {170, 10, hctMinimize},
             {164, 10, hctMinimize},
             {163, 10, hctCaption},  // text area
             {100, 10, hctCaption},
             {199, 10, hctCaption},  // right margin
             {190, 1, hctCaption},   // top margin over a button
             {190, 18, hctCaption},  // bottom margin
             {200, 10, 0},           // right edge is outside
             {100, 20, 0},
             {-1, 10, 0},
             {100, -1, 0}});
  // alBottom lays out the same way.
  CheckHits(bar, parts, alBottom, {{190, 10, hctClose}, {170, 10, hctMinimize}});
  // Without the caption part only buttons are found.
  CheckHits(bar, HCaptionTypes{hctMinimize, hctClose}, alTop,
            {{100, 10, 0}, {199, 10, 0}, {190, 10, hctClose}, {170, 10, hctMinimize}});
  // A bar offset from the origin.
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
    const MyPoint centre{(expected.left + expected.right) / 2, 10};
    EXPECT_EQ(TC_WinCaptionHitTest(bar, all, alTop, centre), order[i]) << "button " << i;
  }
  EXPECT_EQ(l.Text, (MyRect{2, 2, 113, 18})) << l.Text;
  // A missing button takes no room.
  const HCaptionLayout gap = TC_WinCaptionLayout(bar, HCaptionTypes{hctClose, hctHelp}, alTop);
  ASSERT_EQ(gap.Count, 2);
  EXPECT_EQ(gap.Kind[1], hctHelp);
  EXPECT_EQ(gap.Button[1], (MyRect{164, 2, 181, 18})) << gap.Button[1];
  // No buttons: the text takes the whole inner area.
  EXPECT_EQ(TC_WinCaptionLayout(bar, HCaptionTypes{hctCaption}, alTop).Text, (MyRect{2, 2, 198, 18}));
  // More buttons than room: the text area is empty, not inverted.
  const HCaptionLayout tight = TC_WinCaptionLayout(MyRect{0, 0, 40, 20}, all, alTop);
  EXPECT_EQ(tight.Text.Width(), 0) << tight.Text;
}

TEST(HExtDrawCaptionHitTest, VerticalBar) {
  const MyRect bar{0, 0, 20, 200};
  const HCaptionLayout l = TC_WinCaptionLayout(bar, HCaptionTypes{hctClose}, alLeft);
  ASSERT_EQ(l.Count, 1);
  EXPECT_EQ(l.Button[0], (MyRect{2, 2, 18, 19})) << l.Button[0];
  EXPECT_EQ(l.Text, (MyRect{2, 19, 18, 198})) << l.Text;
  const HCaptionTypes parts{hctCaption, hctClose, hctMaximize};
  for (Controls::TAlign a : {alLeft, alRight, Controls::alNone, Controls::alClient})
    CheckHits(bar, parts, a,
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

}  // namespace
