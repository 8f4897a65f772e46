// The framework's bitmap: resizing keeps the overlapping top-left part of the
// picture and blackens the rest; sizes below 0 make an empty bitmap.
#include "platform/vcl/graphics/bitmap.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <string>

namespace {

uint32_t& Pixel(Graphics::TBitmap& b, int x, int y) { return static_cast<uint32_t*>(b.GetScanLine(y))[x]; }

// Every pixel written before resizing: 0x010000 * (y + 1) + x + 1.
uint32_t Marked(int x, int y) { return 0x010000u * static_cast<uint32_t>(y + 1) + static_cast<uint32_t>(x + 1); }

TEST(TBitmap, ResizingKeepsTheOverlapAndBlackensTheRest) {
  const struct {
    const char* what;
    int w, h;
  } rows[] = {{"wider and shorter", 6, 2}, {"narrower and taller", 2, 5}, {"the same size", 4, 3}, {"larger", 7, 6}};
  for (const auto& r : rows) {
    Graphics::TBitmap b;
    b.SetSize(4, 3);
    for (int y = 0; y < 3; ++y)
      for (int x = 0; x < 4; ++x) Pixel(b, x, y) = Marked(x, y);
    b.SetSize(r.w, r.h);
    ASSERT_EQ(r.w, b.GetWidth()) << r.what;
    ASSERT_EQ(r.h, b.GetHeight()) << r.what;
    for (int y = 0; y < r.h; ++y)
      for (int x = 0; x < r.w; ++x) {
        const uint32_t expected = x < 4 && y < 3 ? Marked(x, y) : 0;
        EXPECT_EQ(expected, Pixel(b, x, y) & 0xFFFFFF) << r.what << ", pixel " << x << "," << y;
      }
  }
}

TEST(TBitmap, SizesBelowZeroMakeAnEmptyBitmap) {
  const struct {
    int w, h;
    const char* expected;  // width x height, empty or not
  } rows[] = {{-5, 3, "0x3 empty"}, {3, -1, "3x0 empty"}, {0, 0, "0x0 empty"}, {1, 1, "1x1"}};
  for (const auto& r : rows) {
    Graphics::TBitmap b;
    b.SetSize(r.w, r.h);
    const bool empty = b.GetEmpty();
    EXPECT_EQ(r.expected, std::to_string(b.GetWidth()) + "x" + std::to_string(b.GetHeight()) + (empty ? " empty" : ""))
        << r.w << ", " << r.h;
    EXPECT_EQ(empty, b.GetHandle() == nullptr) << r.w << ", " << r.h << ": a handle only when not empty";
    EXPECT_EQ(empty, b.GetScanLine(0) == nullptr) << r.w << ", " << r.h << ": a first row only when not empty";
  }
}

}  // namespace
