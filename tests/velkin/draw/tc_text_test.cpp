#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/ostrel/dc_changer.h"
#include "tests/script_samples.h"
#include "tests/velkin/draw/draw_pixels.h"
#include "velkin/draw/tc_text.h"

using namespace draw_pixels;
using namespace Graphics;

namespace {

// What the text put on a silver surface: the bounding box of the changed
// pixels and how many have exactly the given colour.
struct Ink {
  MyRect box{1 << 20, 1 << 20, -1, -1};
  int exact = 0;
};

Ink Read(const Reader& read, int w, int h, uint32_t color, int top = 0) {
  Ink ink;
  for (int y = top; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const uint32_t p = read(x, y);
      if (p == 0xC0C0C0) continue;
      ink.exact += p == color;
      ink.box = MyRect{std::min<int>(ink.box.left, x), std::min<int>(ink.box.top, y),
                       std::max<int>(ink.box.right, x + 1), std::max<int>(ink.box.bottom, y + 1)};
    }
  return ink;
}

TEST(TC_TextOut, ColourKeepsTheFontsOrUsesTheGivenOne) {
  BothSurfaces s(120, 30);
  s.Run([](auto* c) {
    c->GetFont()->SetColor(clRed);
    TC_TextOut(c, MyRect{0, 0, 120, 15}, "Hello", clNone, 0);
    TC_TextOut(c, MyRect{0, 15, 120, 30}, "Hello", clBlue, 0);
    EXPECT_EQ(c->GetFont()->GetColor(), clRed);
  });
  for (auto [name, read] : {std::pair{"TCanvas", s.Framework()}, std::pair{"HCustomCanvas", s.Own()}}) {
    const Ink red = Read(read, 120, 15, 0xFF0000), blue = Read(read, 120, 30, 0x0000FF, 15);
    EXPECT_GT(red.exact, 10) << name << ": clNone writes in the font's red";
    EXPECT_GT(blue.exact, 10) << name << ": clBlue";
    EXPECT_EQ(Read(read, 120, 30, 0xFF0000, 15).exact, 0) << name;
  }
}

// Text in the process's code page comes out as the letters it stands for:
// the top half as the wide functions draw them in the bottom half.
TEST(TC_TextOut, TextAsItsLetters) {
  for (const auto& sample : script_samples::samples) {
    std::string text;
    if (!script_samples::InAnsi(sample.utf8, text)) continue;
    const std::wstring letters = script_samples::Wide(sample.utf8);
    BothSurfaces s(200, 40);
    s.Run([&](auto* c) {
      TC_TextOut(c, MyRect{0, 0, 200, 20}, text.c_str(), clBlue, 0);
      TC_TextOut(c, 100, 0, text.c_str());
      const HDC dc = static_cast<HDC>(c->GetHandle());
      DCChanger use(dc);
      use.SetBkMode(TRANSPARENT);
      use.SetTextColor(RGB(0, 0, 255));
      RECT r{0, 20, 200, 40};
      DrawTextW(dc, letters.c_str(), -1, &r, 0);
      use.SetTextColor(static_cast<COLORREF>(ColorToRGB(c->GetFont()->GetColor())));
      TextOutW(dc, 100, 20, letters.c_str(), static_cast<int>(letters.size()));
    });
    for (auto [name, read] : {std::pair{"TCanvas", s.Framework()}, std::pair{"HCustomCanvas", s.Own()}}) {
      const Reader bottom = [read](int x, int y) { return read(x, y + 20); };
      EXPECT_EQ("", Diff(read, bottom, 200, 20)) << name << ", " << sample.what;
    }
  }
}

TEST(TC_TextOut, VerticalTextReadsUpwards) {
  BothSurfaces s(40, 160), up(40, 160);
  s.Run([&](auto* c) { TC_TextOutV(c, MyRect{5, 5, 35, 155}, "Vertical caption", clBlue, DT_CENTER | DT_VCENTER); });
  // Heavy letters first, dots last: upwards the ink gathers at the bottom.
  // DT_LEFT starts at the bottom, DT_TOP puts the text's top at the left edge.
  up.Run([](auto* c) { TC_TextOutV(c, MyRect{5, 5, 35, 155}, "lMMMMM.......", clBlue, 0); });
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
    EXPECT_TRUE(u.box.bottom >= 150 && u.box.left <= 8) << name << ": ink " << u.box;
  }
}

}  // namespace
