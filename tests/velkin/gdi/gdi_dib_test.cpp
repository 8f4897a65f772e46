// Bitmaps and DIB sections: sizes as GDI sees them, the bottom-up row
// arithmetic of DataAt, pixel access, and the exact AntiAlias arithmetic with
// its guard against out-of-range memory.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <initializer_list>
#include <utility>
#include <vector>

#include "velkin/gdi/gdi_bitmap.h"
#include "velkin/gdi/gdi_dib.h"

void PrintTo(const HColor32& c, std::ostream* os) {
  *os << "{b=" << int(c.Blue) << " g=" << int(c.Green) << " r=" << int(c.Red) << " x=" << int(c.Reserved) << "}";
}

namespace {

// Pixel k of the buffer, in memory order.
HColor32* Pixel(HGDIDib32& d, int k) { return static_cast<HColor32*>(d.GetPixels()) + k; }

// A live buffer filled with values whose sums rarely divide evenly (fourth
// byte: the pixel's index), or with `fill` when given.
void Fill(HGDIDib32& d, const HColor32* fill = nullptr) {
  ASSERT_NE(nullptr, d.DataAt(0, d.GetHeight()));
  for (int k = 0; k < d.GetSize() / 4; ++k)
    *Pixel(d, k) = fill ? *fill : HColor32{uint8_t(3 * k + 1), uint8_t(200 - 7 * k), uint8_t(k * k), uint8_t(k)};
}

// The truncated per-channel average of the listed source pixels, fourth byte x.
HColor32 Avg(HGDIDib32& src, std::initializer_list<int> ks, uint8_t x) {
  unsigned b = 0, g = 0, r = 0;
  for (int k : ks) b += Pixel(src, k)->Blue, g += Pixel(src, k)->Green, r += Pixel(src, k)->Red;
  const unsigned n = static_cast<unsigned>(ks.size());
  return HColor32{uint8_t(b / n), uint8_t(g / n), uint8_t(r / n), x};
}

TEST(GdiDib, SizesRowsAndPixels) {
  HGDIDib32 tiny(0, 0);
  EXPECT_EQ((MyPoint{1, 1}), (MyPoint{tiny.GetWidth(), tiny.GetHeight()}));
  tiny.SetWidth(0);
  EXPECT_EQ(0, tiny.GetWidth());
  ASSERT_NE(nullptr, tiny.GetHandle());
  EXPECT_EQ(1, tiny.GetDibSection().dsBm.bmWidth);
  MyRect r{5, 7, -2, 100};
  HGDIDib32(10, 20).CorrectRect(r);
  EXPECT_EQ((MyRect{0, 7, 5, 20}), r);

  // 3 pixels wide: lines of 12 bytes; y = height is the first line in memory.
  HGDIDib32 dib(3, 4);
  auto* bits = reinterpret_cast<uint8_t*>(dib.DataAt(0, 4));
  ASSERT_NE(nullptr, bits);
  EXPECT_EQ(dib.GetPixels(), bits);
  EXPECT_EQ(12, dib.GetLineSize());
  EXPECT_EQ(48, dib.GetSize());
  EXPECT_EQ(static_cast<void*>(bits + 36), dib.DataAt(0, 1));
  EXPECT_EQ(static_cast<void*>(bits + 12), dib.DataAt(3, 4)) << "x runs on into the next line";
  EXPECT_EQ(static_cast<void*>(bits + 44), dib.DataAt(2, 1)) << "last pixel of the buffer";
  const std::pair<int, int> outside[] = {{0, 0}, {3, 1}, {-1, 4}, {0, 5}, {0x7FFFFFFF, -0x7FFFFFFF}};
  for (auto [x, y] : outside) EXPECT_EQ(nullptr, dib.DataAt(x, y)) << "out of range: " << x << "," << y;

  // GDI's top row is DataAt's y = 1 (the last line in memory).
  HDC dc = CreateCompatibleDC(nullptr);
  dib.Select(dc);
  SetPixel(dc, 2, 0, RGB(10, 20, 30));
  GdiFlush();
  EXPECT_EQ((HColor32{30, 20, 10, 0}), dib.GetPixelAt(2, 4 - 3));
  const HColor32 c{1, 2, 3, 4};
  dib.SetPixelAt(1, 4, c);
  EXPECT_EQ(c, dib.GetPixelAt(1, 4)) << "all four bytes";
  EXPECT_EQ(RGB(3, 2, 1), GetPixel(dc, 1, 3));
  // Out-of-range pixel access reads zero and writes nothing.
  std::vector<uint8_t> before(bits, bits + 48);
  dib.SetPixelAt(3, 1, HColor32{9, 9, 9, 9});
  dib.SetPixelAt(0, 0, HColor32{9, 9, 9, 9});
  EXPECT_EQ(0, std::memcmp(before.data(), bits, 48));
  EXPECT_EQ(HColor32{}, dib.GetPixelAt(-5, 4));
  EXPECT_EQ(c, dib.GetPixelAt(-2, 3)) << "a negative x reaches back into the line before";

  // A size change while selected re-makes the DIB at once, in the same
  // context, and marks it dirty: the next GetHandle makes yet another.
  dib.SetWidth(5);
  HGDIOBJ now = GetCurrentObject(dc, OBJ_BITMAP);
  BITMAP bm{};
  ASSERT_GT(GetObjectA(now, sizeof bm, &bm), 0);
  EXPECT_EQ(5, bm.bmWidth);
  EXPECT_NE(now, dib.GetHandle());
  EXPECT_EQ(20, dib.GetLineSize());
  dib.Restore();
  DeleteDC(dc);
  // After DestroyHandle the stored pointer is stale: DataAt makes a new DIB.
  dib.DestroyHandle();
  ASSERT_NE(nullptr, dib.DataAt(0, 1));
  EXPECT_TRUE(dib.GetHandleValid());
}

TEST(GdiDib, CompatibleBitmapAndAssign) {
  HGDIBitmap bmp;
  bmp.Assign(30, 0);
  EXPECT_EQ(1, bmp.GetHeight());
  bmp.SetHeight(12);
  BITMAP bm{};
  ASSERT_GT(GetObjectA(bmp.GetHandle(), sizeof bm, &bm), 0);
  EXPECT_EQ(30, bm.bmWidth);
  EXPECT_EQ(12, bm.bmHeight);

  HGDIDib dib8(8, 10, 3);  // paletted: lines rounded up to 4 bytes
  ASSERT_NE(nullptr, dib8.GetHandle());
  EXPECT_EQ(8, dib8.GetDibSection().dsBm.bmBitsPixel);
  EXPECT_EQ(12, dib8.GetLineSize());
  EXPECT_EQ(36, dib8.GetSize());

  HGDIDib32 dib(4, 4);
  dib.Assign(&bmp);
  EXPECT_EQ(30, dib.GetWidth());
  EXPECT_EQ(12, dib.GetHeight());
  dib.Assign(static_cast<Classes::TPersistent*>(&dib8));  // ignored on purpose
  dib.Assign(static_cast<Classes::TPersistent*>(nullptr));
  EXPECT_EQ(30, dib.GetWidth());
}

TEST(GdiDib, AntiAliasArithmeticStaysInBuffer) {
  // 4 x 3: buffer pixels 0..11; y = 0 lies past the buffer, y = 3 is the
  // first line in memory. Each row walks 5 samples two pixels apart; later
  // rows overwrite earlier ones; neighbours before the buffer are left out.
  const HColor32 grey{7, 7, 7, 0xAB};
  HGDIDib32 src(4, 3), dst(4, 3);
  Fill(src);
  Fill(dst, &grey);
  MyRect r{0, 0, 4, 3};
  src.AntiAlias(&dst, r);
  const HColor32 expected[12] = {
      Avg(src, {0}, 0xAB),    grey, Avg(src, {2, 0}, 0xAB),    grey, Avg(src, {4, 2}, 0xAB),     grey,
      Avg(src, {6, 4}, 0xAB), grey, Avg(src, {8, 6, 0}, 0xAB), grey, Avg(src, {10, 8, 2}, 0xAB), grey,
  };
  for (int k = 0; k < 12; ++k) EXPECT_EQ(expected[k], *Pixel(dst, k)) << "pixel " << k;

  // Fully inside the buffer: 8 x 6, samples at x = 1, 3, 5 on rows 2 and 3;
  // the target takes the source size.
  HGDIDib32 big(8, 6), out(2, 2);
  Fill(big);
  MyRect inner{1, 2, 3, 3};
  big.AntiAlias(&out, inner);
  ASSERT_EQ((MyPoint{8, 6}), (MyPoint{out.GetWidth(), out.GetHeight()}));
  const uint8_t x = Pixel(out, 33)->Reserved;  // fresh DIB: whatever it holds
  const std::pair<int, HColor32> cases[] = {
      {33, Avg(big, {33, 31, 17}, x)}, {35, Avg(big, {35, 33, 19}, x)}, {37, Avg(big, {37, 35, 21}, x)},
      {25, Avg(big, {25, 23, 9}, x)},  {27, Avg(big, {27, 25, 11}, x)}, {29, Avg(big, {29, 27, 13}, x)},
  };
  for (const auto& [k, want] : cases) EXPECT_EQ(want, *Pixel(out, k)) << "pixel " << k;

  // An empty corrected rectangle leaves the target alone, size included.
  HGDIDib32 keep(7, 7);
  MyRect empty{2, 2, 2, 5}, outside{50, 50, 60, 60};
  big.AntiAlias(&keep, empty);
  EXPECT_EQ(7, keep.GetWidth());
  big.AntiAlias(&keep, outside);  // clamps to nothing: no sample, no crash
  big.AntiAlias(nullptr, inner);

  // Rows of a full-width rectangle run two lines long: every sample that
  // would fall outside the buffer is skipped, the fourth bytes are kept.
  HGDIDib32 wide(9, 5), wideOut(9, 5);
  Fill(wide);
  Fill(wideOut);
  MyRect all{-10, -10, 100, 100};
  wide.AntiAlias(&wideOut, all);
  EXPECT_EQ((MyRect{0, 0, 9, 5}), all) << "corrected in place";
  for (int k = 0; k < 45; ++k) EXPECT_EQ(uint8_t(k), Pixel(wideOut, k)->Reserved) << "pixel " << k;
  // The last row walked (y = 5) starts at pixel 0 (neither neighbour) and
  // runs on to pixel 18 at x = 9: left neighbour 16, two lines lower 0.
  EXPECT_EQ(Avg(wide, {0}, 0), *Pixel(wideOut, 0));
  EXPECT_EQ(Avg(wide, {18, 16, 0}, 18), *Pixel(wideOut, 18));
}

}  // namespace
