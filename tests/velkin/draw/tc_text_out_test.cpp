#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/velkin/draw/canvas_pixels.h"
#include "velkin/draw/tc_text.h"

using namespace canvas_pixels;
using namespace Graphics;

namespace {

// What the text put on a silver surface: bounding box of changed pixels, how
// many have exactly the expected colour and how many any other colour that is
// not a blend towards it.
struct Ink {
  MyRect box{1 << 20, 1 << 20, -1, -1};
  int exact = 0;
  int changed = 0;
};

Ink Read(const Reader& read, int w, int h, uint32_t color) {
  Ink ink;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const uint32_t p = read(x, y);
      if (p == 0xC0C0C0) continue;
      ++ink.changed;
      if (p == color) ++ink.exact;
      ink.box.left = std::min<int>(ink.box.left, x);
      ink.box.top = std::min<int>(ink.box.top, y);
      ink.box.right = std::max<int>(ink.box.right, x + 1);
      ink.box.bottom = std::max<int>(ink.box.bottom, y + 1);
    }
  return ink;
}

std::string Show(const MyRect& r) {
  return "(" + std::to_string(r.left) + "," + std::to_string(r.top) + ")-(" + std::to_string(r.right) + "," +
         std::to_string(r.bottom) + ")";
}

TEST(TcTextOut, ColourKeepsTheFontsOrUsesTheGivenOne) {
  BothSurfaces s(120, 30);
  s.bmp.GetCanvas()->GetFont()->SetColor(clRed);
  s.hc.GetFont()->SetColor(clRed);
  s.Run([](auto* c) {
    TC_TextOut(c, MyRect{0, 0, 120, 15}, "Hello", clNone, 0);
    TC_TextOut(c, MyRect{0, 15, 120, 30}, "Hello", clBlue, 0);
  });
  for (auto [name, read] : {std::pair{"TCanvas", s.Framework()}, std::pair{"HCustomCanvas", s.Own()}}) {
    const Ink red = Read([&](int x, int y) { return read(x, y); }, 120, 15, 0xFF0000);
    const Ink blue = Read([&](int x, int y) { return read(x, y + 15); }, 120, 15, 0x0000FF);
    EXPECT_GT(red.exact, 10) << name << ": clNone writes in the font's red (" << red.changed << " pixels changed)";
    EXPECT_GT(blue.exact, 10) << name << ": clBlue (" << blue.changed << " pixels changed)";
    EXPECT_EQ(Read([&](int x, int y) { return read(x, y + 15); }, 120, 15, 0xFF0000).exact, 0) << name;
  }
  EXPECT_EQ(s.bmp.GetCanvas()->GetFont()->GetColor(), clRed);
  EXPECT_EQ(s.hc.GetFont()->GetColor(), clRed);
}

TEST(TcTextOut, LayoutFlagsPlaceTheTextAndTheRectangleClipsIt) {
  HBitmapCanvas c;
  c.Resize(200, 60);
  const Reader px = [&](int x, int y) { return At(c.GetDib(), x, y); };
  HDC dc = static_cast<HDC>(c.GetHandle());
  SetTextColor(dc, RGB(1, 2, 3));
  const int mode = SetBkMode(dc, OPAQUE);

  const MyRect r{20, 10, 180, 50};
  c.Fill(MyRect{0, 0, 200, 60}, clSilver);
  c.TextOut(r, "Centred", clBlack, DT_CENTER | DT_VCENTER);
  const Ink centred = Read(px, 200, 60, 0);
  ASSERT_GT(centred.changed, 0);
  const int dx = (centred.box.left + centred.box.right) - (r.left + r.right);
  const int dy = (centred.box.top + centred.box.bottom) - (r.top + r.bottom);
  EXPECT_LE(std::abs(dx), 4) << "ink " << Show(centred.box) << " in " << Show(r);
  EXPECT_LE(std::abs(dy), 6) << "ink " << Show(centred.box) << " in " << Show(r) << " (DT_VCENTER works alone)";
  EXPECT_EQ(GetTextColor(dc), RGB(1, 2, 3)) << "the context's text colour is put back";
  EXPECT_EQ(GetBkMode(dc), OPAQUE);
  SetBkMode(dc, mode);

  c.Fill(MyRect{0, 0, 200, 60}, clSilver);
  c.TextOut(r, "Right", clBlack, DT_RIGHT | DT_BOTTOM);
  const Ink right = Read(px, 200, 60, 0);
  EXPECT_GE(right.box.right, r.right - 3) << Show(right.box);
  EXPECT_LE(right.box.right, r.right);
  EXPECT_GE(right.box.bottom, r.bottom - 6) << Show(right.box);
  // Between the letters the ground shows: no opaque box.
  EXPECT_LT(right.changed, right.box.Width() * right.box.Height());

  c.Fill(MyRect{0, 0, 200, 60}, clSilver);
  const MyRect narrow{30, 20, 60, 40};
  c.TextOut(narrow, "A text much wider than its box", clBlack, DT_SINGLELINE);
  const Ink cut = Read(px, 200, 60, 0);
  EXPECT_GE(cut.box.left, narrow.left);
  EXPECT_LE(cut.box.right, narrow.right) << "ink " << Show(cut.box);
  EXPECT_LE(cut.box.bottom, narrow.bottom);

  // Measuring: the rectangle comes back sized, nothing is drawn.
  c.Fill(MyRect{0, 0, 200, 60}, clSilver);
  MyRect m{5, 5, 5, 5};
  c.TextOut(m, "Measure me", DT_CALCRECT | DT_SINGLELINE);
  EXPECT_EQ(Read(px, 200, 60, 0).changed, 0);
  EXPECT_EQ(m.left, 5);
  EXPECT_GT(m.Width(), 20);
  EXPECT_GT(m.Height(), 5);
  SIZE size{};
  GetTextExtentPoint32A(static_cast<HDC>(c.GetHandle()), "Measure me", 10, &size);
  EXPECT_EQ(m.Width(), size.cx);

  c.TextOut(MyPoint{100, 30}, "At");
  const Ink at = Read(px, 200, 60, 0);
  EXPECT_GE(at.box.left, 100);
  EXPECT_GE(at.box.top, 30);
  EXPECT_LE(at.box.left, 103) << Show(at.box);
}

TEST(TcTextOut, VerticalTextReadsUpwards) {
  BothSurfaces s(40, 160);
  const char* text = "Vertical caption";
  s.Run([&](auto* c) { TC_TextOutV(c, MyRect{5, 5, 35, 155}, text, clBlue, DT_CENTER | DT_VCENTER); });
  for (auto [name, read] : {std::pair{"TCanvas", s.Framework()}, std::pair{"HCustomCanvas", s.Own()}}) {
    const Ink ink = Read(read, 40, 160, 0x0000FF);
    ASSERT_GT(ink.exact, 10) << name;
    EXPECT_GT(ink.box.Height(), 3 * ink.box.Width()) << name << ": ink " << Show(ink.box);
    EXPECT_LE(std::abs(ink.box.top + ink.box.bottom - 160), 8) << name << ": centred along, ink " << Show(ink.box);
    EXPECT_LE(std::abs(ink.box.left + ink.box.right - 40), 8) << name << ": centred across, ink " << Show(ink.box);
  }
  // Upwards: heavy letters first, dots last, so the ink gathers at the bottom.
  BothSurfaces up(40, 160);
  up.Run([](auto* c) { TC_TextOutV(c, MyRect{5, 5, 35, 155}, "MMMMMM.......", clBlue, DT_CENTER); });
  for (auto [name, read] : {std::pair{"TCanvas", up.Framework()}, std::pair{"HCustomCanvas", up.Own()}}) {
    const Ink ink = Read(read, 40, 160, 0x0000FF);
    ASSERT_GT(ink.changed, 0) << name;
    const int third = ink.box.Height() / 3;
    int low = 0, high = 0;
    for (int x = 0; x < 40; ++x)
      for (int k = 0; k < third; ++k) {
        low += read(x, ink.box.bottom - 1 - k) != 0xC0C0C0;
        high += read(x, ink.box.top + k) != 0xC0C0C0;
      }
    EXPECT_GT(low, 3 * high) << name << ": ink in the bottom third " << low << ", in the top third " << high;
  }
  BothSurfaces left(40, 160);
  left.Run([&](auto* c) { TC_TextOutV(c, MyRect{5, 5, 35, 155}, text, clBlue, 0); });
  const Ink start = Read(left.Own(), 40, 160, 0x0000FF);
  EXPECT_GE(start.box.bottom, 150) << "DT_LEFT starts at the bottom: " << Show(start.box);
  EXPECT_LE(start.box.left, 8) << "DT_TOP puts the text's top at the left edge: " << Show(start.box);
  TC_TextOutV(static_cast<HCustomCanvas*>(nullptr), MyRect{0, 0, 9, 9}, "x", clNone, 0);
  TC_TextOut(static_cast<TCanvas*>(nullptr), 0, 0, "x");
}

}  // namespace
