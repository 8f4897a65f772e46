// DIB sections: rows and pixels as DataAt addresses them, and the smoothing
// filter's arithmetic.
#include "velkin/gdi/gdi_dib.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <random>
#include <set>
#include <string>
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

// ---- AntiAlias against a plain filter ----

// HGDIDib32::AntiAlias against a plain per-sample walk written here: random
// frames of many shapes, rectangles on and past every edge, in place and into
// a target of another size, byte for byte over the whole target buffer.

// The filter sample by sample over the corrected r, top row first: each sample averages (truncating)
// its own pixel, the one two places to its left (from the second sample, or
// the first when the rectangle does not start at x = 0) and the one two lines
// lower in memory (from row 1); samples step two pixels, a row runs on into
// the next memory line. A pixel outside the buffer is left out of the average;
// a sample whose own pixel is outside is not written. src and dst may be the
// same buffer. sums (optional, one entry a byte of dst) receive the last sum
// written to each byte and divisor * 1000.
void Reference(const uint8_t* src, uint8_t* dst, int64_t size, int64_t line, int64_t height, int64_t stride, MyRect r,
               std::vector<int>* sums = nullptr) {
  if (r.left == r.right || r.top == r.bottom) return;  // an empty rectangle does nothing
  auto in = [size](int64_t o) { return o >= 0 && o + 4 <= size; };
  for (int64_t y = r.top; y <= r.bottom; ++y) {
    int64_t s = 4 * ((height - y) * line + r.left), p = s - 8;
    for (int64_t x = r.left; x <= r.right; ++x, p = s, s += 8) {
      if (!in(s)) continue;
      int sum[3] = {src[s], src[s + 1], src[s + 2]}, n = 1;
      if (x > 0 && in(p)) {
        for (int c = 0; c < 3; ++c) sum[c] += src[p + c];
        ++n;
      }
      const int64_t v = s - 8 * stride;
      if (y > 0 && in(v)) {
        for (int c = 0; c < 3; ++c) sum[c] += src[v + c];
        ++n;
      }
      for (int c = 0; c < 3; ++c) {
        dst[s + c] = static_cast<uint8_t>(sum[c] / n);
        if (sums) (*sums)[s + c] = sum[c] + 1000 * n;
      }
    }
  }
}

// Edges in order, then clamped to the bitmap.
MyRect Corrected(MyRect r, int width, int height) {
  return MyRect{std::max(0, std::min(r.left, r.right)), std::max(0, std::min(r.top, r.bottom)),
                std::min(std::max(r.left, r.right), width), std::min(std::max(r.top, r.bottom), height)};
}

std::string Show(const MyRect& r) {
  return "(" + std::to_string(r.left) + "," + std::to_string(r.top) + "," + std::to_string(r.right) + "," +
         std::to_string(r.bottom) + ")";
}

uint8_t* Bytes(HGDIDib32& d) { return static_cast<uint8_t*>(d.GetPixels()); }
int64_t Size(HGDIDib32& d) { return static_cast<int64_t>(d.GetLineSize()) * d.GetHeight(); }
std::vector<uint8_t> Copy(HGDIDib32& d) { return std::vector<uint8_t>(Bytes(d), Bytes(d) + Size(d)); }

// Creates the DIB and fills it; skew makes a third of the bytes 0 and a third
// 255, so that sums reach both ends of their range often.
void Randomise(HGDIDib32& d, std::mt19937& rng, bool skew = false) {
  ASSERT_NE(nullptr, d.DataAt(0, d.GetHeight())) << d.GetWidth() << "x" << d.GetHeight();
  for (int64_t i = 0; i < Size(d); ++i) {
    const uint32_t v = rng();
    Bytes(d)[i] = !skew || v % 3 == 2 ? static_cast<uint8_t>(v >> 8) : v % 3 ? 255 : 0;
  }
}

// Whole buffers compared; the message names the case, the first differing
// byte (pixel and channel), the actual and the expected value, and the count.
void ExpectSame(const std::string& what, const uint8_t* got, const std::vector<uint8_t>& want) {
  int64_t bad = 0, first = 0;
  for (size_t i = 0; i < want.size(); ++i)
    if (got[i] != want[i] && bad++ == 0) first = static_cast<int64_t>(i);
  EXPECT_EQ(0, bad) << what << ": first at byte " << first << " (pixel " << first / 4 << ", byte " << first % 4
                    << "): got " << int(got[first]) << ", want " << int(want[first]);
}

// One case: src and dst of w x h (dst filled too, so that what AntiAlias must
// leave alone is known), the filter against the reference. With thirds, the
// source is skewed and the sums divided by 3 that reach the target are added.
void Check(int w, int h, MyRect r, std::mt19937& rng, std::set<int>* thirds = nullptr) {
  HGDIDib32 src(w, h), dst(w, h);
  Randomise(src, rng, thirds != nullptr);
  Randomise(dst, rng);
  const std::string what = std::to_string(w) + "x" + std::to_string(h) + " rect " + Show(r);
  const MyRect c = Corrected(r, w, h);
  std::vector<uint8_t> want = Copy(dst);
  std::vector<int> sums(want.size(), -1);
  Reference(Bytes(src), want.data(), Size(src), w, h, w, c, &sums);
  MyRect arg = r;
  src.AntiAlias(&dst, arg);
  EXPECT_EQ(Show(c), Show(arg)) << what << ": the rectangle comes back corrected";
  ASSERT_EQ(Size(src), Size(dst)) << what;
  ExpectSame(what, Bytes(dst), want);
  for (int sum : sums)
    if (thirds && sum >= 3000) thirds->insert(sum - 3000);
}

TEST(HGDIDib32, AntiAliasMatchesThePlainFilter) {
  std::mt19937 rng(20240611);
  const int widths[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 16, 17, 33, 64, 1920, 1921};
  const int heights[] = {1, 2, 3, 4, 7};
  for (int w : widths)
    for (int h : heights) {
      const MyRect rects[] = {
          {0, 0, w, h},                          // the whole frame: rows run a line and a sample
          {-5, -7, w + 9, h + 3},                // past every edge, clamped
          {w, h, 0, 0},                          // edges reversed
          {1, 1, w - 1, h - 1},                  // inside by one
          {0, 0, w, 1},                          // row 0 (past the buffer) and row 1
          {0, h - 1, w, h},                      // the first memory line and the next
          {w / 3, 0, w, h},                      // first sample with its left neighbour
          {1, 0, 2, h},                          // a column two samples wide
          {0, 1, w / 2, h},                      // shorter rows: the rows write apart
          {w / 2, h / 2, w / 2 + 3, h / 2 + 2},  // a small block
          {w + 1, 0, w + 5, h},                  // right of the frame: nothing
          {0, 0, 0, h},                          // empty: nothing
      };
      for (const MyRect& r : rects) Check(w, h, r, rng);
      if (HasFailure()) return;
    }
  Check(1920, 1080, MyRect{0, 0, 1920, 1080}, rng);
  Check(1921, 1081, MyRect{3, 5, 1700, 1000}, rng);

  // Every sum of three bytes, 0 to 765, reaches the target divided by 3
  // exactly (the division is a multiplication and a shift).
  for (int w : {1000, 999}) {
    std::set<int> thirds;
    Check(w, 40, MyRect{0, 0, w, 40}, rng, &thirds);
    EXPECT_EQ(766u, thirds.size()) << "width " << w << ": sums of three reaching the target";
  }
}

// In place each sample reads the ones before it as already written. Into a
// target of another size, re-made at the source's size, whose fresh pixels are
// not known beforehand: the reference is laid over what came out. The step
// down to the lower line is the source's line as last created: a size change
// not yet made into a DIB keeps the old step.
TEST(HGDIDib32, AntiAliasInPlaceAndIntoAnotherSize) {
  std::mt19937 rng(7);
  for (int w : {5, 16, 17, 64}) {
    HGDIDib32 d(w, 9);
    Randomise(d, rng);
    const MyRect r{0, 0, w, 9};
    std::vector<uint8_t> want = Copy(d);
    Reference(want.data(), want.data(), Size(d), w, 9, w, r);
    MyRect arg = r;
    d.AntiAlias(&d, arg);
    ExpectSame("in place, width " + std::to_string(w), Bytes(d), want);
  }

  HGDIDib32 src(33, 6), small(4, 4), grown(8, 6), out(10, 6);
  Randomise(src, rng);
  Randomise(small, rng);
  Randomise(grown, rng);
  grown.SetWidth(10);
  MyRect r{0, 0, 33, 6}, g{0, 0, 10, 6};
  src.AntiAlias(&small, r);
  grown.AntiAlias(&out, g);
  EXPECT_EQ((MyPoint{33, 6}), (MyPoint{small.GetWidth(), small.GetHeight()}));
  ASSERT_EQ(Size(src), Size(small));
  ASSERT_EQ(40, grown.GetLineSize());
  std::vector<uint8_t> want = Copy(small), old = Copy(out);
  Reference(Bytes(src), want.data(), Size(src), 33, 6, 33, r);
  Reference(Bytes(grown), old.data(), Size(grown), 10, 6, 8, g);
  ExpectSame("into a 4x4 target", Bytes(small), want);
  ExpectSame("source grown since its last creation", Bytes(out), old);
}

}  // namespace
