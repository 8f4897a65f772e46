// DIB sections: rows and pixels as DataAt addresses them, and the smoothing
// filter against a plain per-sample walk written here.
#include "velkin/gdi/gdi_dib.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "platform/ostrel/owned_handle.h"
#include "tests/velkin/gdi/gdi_fixtures.h"

namespace {

TEST(HGDIDib32, SizesRowsAndPixels) {
  HGDIDib dib8(8, 0, -5);  // sizes below 1 become 1
  dib8.GetHandle();
  EXPECT_EQ(8, dib8.GetDibSection().dsBm.bmBitsPixel) << "bit count";
  EXPECT_EQ((MyPoint{1, 1}), (MyPoint{dib8.GetDibSection().dsBm.bmWidth, dib8.GetDibSection().dsBm.bmHeight}));
  // A side set to 0 makes a DIB one pixel across; other sizes are taken as they are.
  HGDIDib32 sized(5, 5);
  for (int side : {0, 1, 2}) {
    sized.SetWidth(side);
    sized.SetHeight(side);
    sized.GetHandle();
    const BITMAP& bm = sized.GetDibSection().dsBm;
    EXPECT_EQ((MyPoint{side ? side : 1, side ? side : 1}), (MyPoint{bm.bmWidth, bm.bmHeight})) << "side " << side;
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
  const OwnedMemoryDC dc(CreateCompatibleDC(nullptr));
  dib.Select(dc.get());
  SetPixel(dc.get(), 2, 0, RGB(10, 20, 30));
  GdiFlush();
  EXPECT_EQ((HColor32{30, 20, 10, 0}), dib.GetPixelAt(2, 4 - 3));
  const HColor32 c{1, 2, 3, 4};
  dib.SetPixelAt(1, 4, c);
  EXPECT_EQ(c, dib.GetPixelAt(1, 4)) << "all four bytes";
  EXPECT_EQ(RGB(3, 2, 1), GetPixel(dc.get(), 1, 3));
  // Out-of-range pixel access reads zero and writes nothing.
  std::vector<uint8_t> before(bits, bits + 48);
  dib.SetPixelAt(3, 1, HColor32{9, 9, 9, 9});
  dib.SetPixelAt(0, 0, HColor32{9, 9, 9, 9});
  EXPECT_EQ(0, std::memcmp(before.data(), bits, 48));
  EXPECT_EQ(HColor32{}, dib.GetPixelAt(-5, 4));
  EXPECT_EQ(c, dib.GetPixelAt(-2, 3)) << "a negative x reaches back into the line before";
  dib.Restore();

  // After DestroyHandle the stored pointer is stale: DataAt makes a new DIB.
  dib.DestroyHandle();
  ASSERT_NE(nullptr, dib.DataAt(0, 1));
  EXPECT_TRUE(dib.GetHandleValid());
}

// The filter sample by sample over the corrected r, top row first: each
// sample averages (truncating) its own pixel, the one two places to its left
// (from the second sample, or the first when the rectangle does not start at
// x = 0) and the one two lines lower in memory (from row 1); samples step two
// pixels, a row runs on into the next memory line. A pixel outside the buffer
// is left out of the average; a sample whose own pixel is outside is not
// written. src and dst may be the same buffer. sums (optional, one entry a
// byte of dst) receive the last sum written to each byte and divisor * 1000.
void Reference(const uint8_t* src, uint8_t* dst, int64_t size, int64_t line, int64_t height, int64_t stride, MyRect r,
               std::vector<int>* sums = nullptr) {
  if (r.left == r.right || r.top == r.bottom) return;  // an empty rectangle does nothing
  auto in = [size](int64_t o) { return o >= 0 && o + 4 <= size; };
  for (int64_t y = r.top; y <= r.bottom; ++y) {
    int64_t s = 4 * ((height - y) * line + r.left), p = s - 8;
    for (int64_t x = r.left; x <= r.right; ++x, p = s, s += 8) {
      if (!in(s)) continue;
      const int64_t v = s - 8 * stride;
      const bool left = x > 0 && in(p), below = y > 0 && in(v);
      for (int c = 0; c < 3; ++c) {
        const int sum = src[s + c] + (left ? src[p + c] : 0) + (below ? src[v + c] : 0), n = 1 + left + below;
        dst[s + c] = static_cast<uint8_t>(sum / n);
        if (sums) (*sums)[s + c] = sum + 1000 * n;
      }
    }
  }
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
// byte (pixel and channel), the actual and the expected value.
void ExpectSame(const std::string& what, const uint8_t* got, const std::vector<uint8_t>& want) {
  const auto bad = std::mismatch(want.begin(), want.end(), got).first - want.begin();
  if (bad < int64_t(want.size()))
    ADD_FAILURE() << what << ": first at byte " << bad << " (pixel " << bad / 4 << ", byte " << bad % 4 << "): got "
                  << int(got[bad]) << ", want " << int(want[bad]);
}

// One case: src and dst of w x h (dst filled too, so that what AntiAlias must
// leave alone is known), the filter against the reference, and the rectangle
// given back ordered and clamped. With thirds, the source is skewed and the
// sums divided by 3 that reach the target are added.
void Check(int w, int h, MyRect r, std::mt19937& rng, std::set<int>* thirds = nullptr) {
  HGDIDib32 src(w, h), dst(w, h);
  Randomise(src, rng, thirds != nullptr);
  Randomise(dst, rng);
  const std::string what = (std::ostringstream() << w << "x" << h << " rect " << r).str();
  const MyRect c{std::max(0, std::min(r.left, r.right)), std::max(0, std::min(r.top, r.bottom)),
                 std::min(std::max(r.left, r.right), w), std::min(std::max(r.top, r.bottom), h)};
  std::vector<uint8_t> want = Copy(dst);
  std::vector<int> sums(want.size(), -1);
  Reference(Bytes(src), want.data(), Size(src), w, h, w, c, &sums);
  src.AntiAlias(&dst, r);
  EXPECT_TRUE(c == r) << what << ": the rectangle comes back as " << r << ", not corrected to " << c;
  ASSERT_EQ(Size(src), Size(dst)) << what;
  ExpectSame(what, Bytes(dst), want);
  for (int sum : sums)
    if (thirds && sum >= 3000) thirds->insert(sum - 3000);
}

// Random frames of many shapes, rectangles on and past every edge, byte for
// byte over the whole target buffer.
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
// not yet made into a DIB keeps the old step. An empty corrected rectangle
// leaves the target alone, size included, and no target is no crash.
TEST(HGDIDib32, AntiAliasInPlaceAndIntoAnotherSize) {
  std::mt19937 rng(7);
  for (int w : {5, 16, 17, 64}) {
    HGDIDib32 d(w, 9);
    Randomise(d, rng);
    MyRect r{0, 0, w, 9};
    std::vector<uint8_t> want = Copy(d);
    Reference(want.data(), want.data(), Size(d), w, 9, w, r);
    d.AntiAlias(&d, r);
    ExpectSame("in place, width " + std::to_string(w), Bytes(d), want);
  }

  HGDIDib32 src(33, 6), small(4, 4), grown(8, 6), out(10, 6), keep(7, 7);
  Randomise(src, rng);
  Randomise(small, rng);
  Randomise(grown, rng);
  grown.SetWidth(10);
  MyRect r{0, 0, 33, 6}, g{0, 0, 10, 6}, empty{2, 2, 2, 5}, outside{50, 50, 60, 60};
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

  src.AntiAlias(&keep, empty);
  EXPECT_EQ((MyPoint{7, 7}), (MyPoint{keep.GetWidth(), keep.GetHeight()})) << "the target of an empty rectangle";
  src.AntiAlias(&keep, outside);  // clamps to no sample: no crash
  src.AntiAlias(nullptr, r);
}

}  // namespace
