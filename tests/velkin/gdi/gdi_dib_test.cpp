// DIB sections: rows and pixels as DataAt addresses them, and the smoothing
// filter's arithmetic.
#include "velkin/gdi/gdi_dib.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <utility>
#include <vector>

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

TEST(HGDIDib32, SizesRowsAndPixels) {
  // A side set to 0 makes a DIB one pixel across; other sizes are taken as they are.
  HGDIDib32 sized(5, 5);
  for (int side : {0, 1, 2}) {
    sized.SetWidth(side);
    sized.SetHeight(side);
    sized.GetHandle();
    EXPECT_EQ(side ? side : 1, sized.GetDibSection().dsBm.bmWidth) << "side " << side << ", width";
    EXPECT_EQ(side ? side : 1, sized.GetDibSection().dsBm.bmHeight) << "side " << side << ", height";
  }

  // 3 pixels wide: lines of 12 bytes; y = height is the first line in memory.
  HGDIDib32 dib(3, 4);
  auto* bits = reinterpret_cast<uint8_t*>(dib.DataAt(0, 4));
  ASSERT_NE(nullptr, bits);
  EXPECT_EQ(static_cast<void*>(bits), dib.GetPixels()) << "pixels";
  EXPECT_EQ(12, dib.GetLineSize()) << "line size";
  EXPECT_EQ(48, dib.GetSize()) << "size";
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

  dib.Restore();
  DeleteDC(dc);
  // After DestroyHandle the stored pointer is stale: DataAt makes a new DIB.
  dib.DestroyHandle();
  ASSERT_NE(nullptr, dib.DataAt(0, 1));
  EXPECT_TRUE(dib.GetHandleValid());
}

TEST(HGDIDib32, AntiAliasArithmeticStaysInBuffer) {
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
  ASSERT_EQ(8, out.GetWidth()) << "the target takes the source's width";
  ASSERT_EQ(6, out.GetHeight()) << "the target takes the source's height";
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
}

}  // namespace
