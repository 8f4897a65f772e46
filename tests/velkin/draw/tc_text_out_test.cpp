#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "tests/velkin/draw/draw_pixels.h"
#include "velkin/draw/tc_text.h"

using namespace draw_pixels;
using namespace Graphics;

static std::ostream& operator<<(std::ostream& os, const MyRect& r) {
  return os << "(" << r.left << "," << r.top << ")-(" << r.right << "," << r.bottom << ")";
}

namespace {

// What the text put on a silver surface: the bounding box of the changed
// pixels, how many changed and how many have exactly the given colour.
struct Ink {
  MyRect box{1 << 20, 1 << 20, -1, -1};
  int exact = 0, changed = 0;
};

Ink Read(const Reader& read, int w, int h, uint32_t color, int top = 0) {
  Ink ink;
  for (int y = top; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const uint32_t p = read(x, y);
      if (p == 0xC0C0C0) continue;
      ++ink.changed;
      ink.exact += p == color;
      ink.box = MyRect{std::min<int>(ink.box.left, x), std::min<int>(ink.box.top, y),
                       std::max<int>(ink.box.right, x + 1), std::max<int>(ink.box.bottom, y + 1)};
    }
  return ink;
}

TEST(TcTextOut, ColourKeepsTheFontsOrUsesTheGivenOne) {
  BothSurfaces s(120, 30);
  s.Run([](auto* c) {
    c->GetFont()->SetColor(clRed);
    TC_TextOut(c, MyRect{0, 0, 120, 15}, "Hello", clNone, 0);
    TC_TextOut(c, MyRect{0, 15, 120, 30}, "Hello", clBlue, 0);
    EXPECT_EQ(c->GetFont()->GetColor(), clRed);
  });
  for (auto [name, read] : {std::pair{"TCanvas", s.Framework()}, std::pair{"HCustomCanvas", s.Own()}}) {
    const Ink red = Read(read, 120, 15, 0xFF0000), blue = Read(read, 120, 30, 0x0000FF, 15);
    EXPECT_GT(red.exact, 10) << name << ": clNone writes in the font's red (" << red.changed << " pixels changed)";
    EXPECT_GT(blue.exact, 10) << name << ": clBlue (" << blue.changed << " pixels changed)";
    EXPECT_EQ(Read(read, 120, 30, 0xFF0000, 15).exact, 0) << name;
  }
}

TEST(TcTextOut, MeasuresAndPutsTheContextBack) {
  HBitmapCanvas c;
  c.Resize(200, 60);
  c.Fill(MyRect{0, 0, 200, 60}, clSilver);
  HDC dc = static_cast<HDC>(c.GetHandle());
  SetTextColor(dc, RGB(1, 2, 3));
  c.TextOut(MyRect{20, 10, 180, 50}, "Centred", clBlack, DT_CENTER | DT_VCENTER);
  const Ink ink = Read(Of(c), 200, 60, 0);
  EXPECT_GT(ink.exact, 10);
  EXPECT_LT(ink.changed, ink.box.Width() * ink.box.Height()) << "no opaque box";
  EXPECT_EQ(GetTextColor(dc), RGB(1, 2, 3)) << "the context's text colour is put back";
  // Measuring: the rectangle comes back sized, nothing is drawn.
  c.Fill(MyRect{0, 0, 200, 60}, clSilver);
  MyRect m{5, 5, 5, 5};
  c.TextOut(m, "Measure me", DT_CALCRECT | DT_SINGLELINE);
  EXPECT_EQ(Read(Of(c), 200, 60, 0).changed, 0);
  SIZE size{};
  GetTextExtentPoint32A(dc, "Measure me", 10, &size);
  EXPECT_EQ(m, (MyRect{5, 5, 5 + size.cx, 5 + size.cy})) << m;
}

TEST(TcTextOut, VerticalTextReadsUpwards) {
  BothSurfaces s(40, 160), up(40, 160);
  s.Run([&](auto* c) { TC_TextOutV(c, MyRect{5, 5, 35, 155}, "Vertical caption", clBlue, DT_CENTER | DT_VCENTER); });
  // Heavy letters first, dots last: upwards the ink gathers at the bottom.
  up.Run([](auto* c) { TC_TextOutV(c, MyRect{5, 5, 35, 155}, "MMMMMM.......", clBlue, DT_CENTER); });
  for (auto [name, read, upRead] :
       {std::tuple{"TCanvas", s.Framework(), up.Framework()}, std::tuple{"HCustomCanvas", s.Own(), up.Own()}}) {
    const Ink ink = Read(read, 40, 160, 0x0000FF);
    ASSERT_GT(ink.exact, 10) << name;
    EXPECT_GT(ink.box.Height(), 3 * ink.box.Width()) << name << ": ink " << ink.box;
    EXPECT_LE(std::abs(ink.box.top + ink.box.bottom - 160), 8) << name << ": centred along, ink " << ink.box;
    EXPECT_LE(std::abs(ink.box.left + ink.box.right - 40), 8) << name << ": centred across, ink " << ink.box;
    const Ink u = Read(upRead, 40, 160, 0x0000FF);
    int low = 0, high = 0;
    for (int x = 0; x < 40; ++x)
      for (int k = 0; k < u.box.Height() / 3; ++k) {
        low += upRead(x, u.box.bottom - 1 - k) != 0xC0C0C0;
        high += upRead(x, u.box.top + k) != 0xC0C0C0;
      }
    EXPECT_GT(low, 3 * high) << name << ": ink in the bottom third " << low << ", in the top third " << high;
  }
  BothSurfaces left(40, 160);
  left.Run([&](auto* c) { TC_TextOutV(c, MyRect{5, 5, 35, 155}, "Vertical caption", clBlue, 0); });
  const Ink start = Read(left.Own(), 40, 160, 0x0000FF);
  EXPECT_GE(start.box.bottom, 150) << "DT_LEFT starts at the bottom: " << start.box;
  EXPECT_LE(start.box.left, 8) << "DT_TOP puts the text's top at the left edge: " << start.box;
  TC_TextOutV(static_cast<HCustomCanvas*>(nullptr), MyRect{0, 0, 9, 9}, "x", clNone, 0);
  TC_TextOut(static_cast<TCanvas*>(nullptr), 0, 0, "x");
}

}  // namespace
