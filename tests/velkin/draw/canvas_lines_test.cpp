#include <gtest/gtest.h>
#include <windows.h>

#include <random>
#include <vector>

#include "velkin/gdi/gdi_lines.h"

namespace {

struct Collector {
  std::vector<POINT> points;
  void Add(int x, int y) { points.push_back(POINT{x, y}); }
};

void CALLBACK Platform(int x, int y, LPARAM data) { reinterpret_cast<std::vector<POINT>*>(data)->push_back({x, y}); }

std::vector<POINT> Reference(int x1, int y1, int x2, int y2, const RECT& clip) {
  std::vector<POINT> all, inside;
  LineDDA(x1, y1, x2, y2, Platform, reinterpret_cast<LPARAM>(&all));
  for (const POINT& p : all)
    if (p.x >= clip.left && p.x < clip.right && p.y >= clip.top && p.y < clip.bottom) inside.push_back(p);
  return inside;
}

std::vector<POINT> Ours(int x1, int y1, int x2, int y2, const RECT& clip) {
  Collector c;
  GR_LineDDA(x1, y1, x2, y2, clip.left, clip.top, clip.right, clip.bottom, HLineDDAProc(&c, &Collector::Add));
  return c.points;
}

bool Same(const std::vector<POINT>& a, const std::vector<POINT>& b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (a[i].x != b[i].x || a[i].y != b[i].y) return false;
  return true;
}

TEST(CanvasLines, SamePixelsAndOrderAsThePlatformsLineDDA) {
  std::mt19937 random(7);
  std::uniform_int_distribution<int> coord(-60, 60);
  const RECT everything{-1000, -1000, 1000, 1000};
  const RECT window{-13, -7, 17, 29};
  // Every octant, ties, single steps and points; then random lines.
  std::vector<RECT> lines = {{0, 0, 0, 0},  {0, 0, 1, 0},   {0, 0, 0, 1},   {0, 0, 10, 10},  {0, 0, -10, 10},
                             {0, 0, 10, 3}, {0, 0, -10, 3}, {0, 0, 3, -10}, {0, 0, -3, -10}, {5, 5, -7, 2}};
  for (int i = 0; i < 400; ++i) lines.push_back(RECT{coord(random), coord(random), coord(random), coord(random)});
  for (const RECT& l : lines)
    for (const RECT& clip : {everything, window}) {
      const auto expected = Reference(l.left, l.top, l.right, l.bottom, clip);
      const auto actual = Ours(l.left, l.top, l.right, l.bottom, clip);
      EXPECT_TRUE(Same(actual, expected))
          << "line (" << l.left << "," << l.top << ")-(" << l.right << "," << l.bottom << ") clip (" << clip.left << ","
          << clip.top << ")-(" << clip.right << "," << clip.bottom << "): " << actual.size() << " points, expected "
          << expected.size();
    }
}

TEST(CanvasLines, LongLinesOnlyWalkTheClip) {
  // A line far longer than the clip starts inside it at the right step.
  const RECT clip{990, 0, 1010, 400};
  for (const RECT& l :
       {RECT{0, 0, 100000, 37}, RECT{100000, 37, 0, 0}, RECT{3, 0, 2000, 300}, RECT{1000, -50000, 1003, 50000}}) {
    const auto expected = Reference(l.left, l.top, l.right, l.bottom, clip);
    EXPECT_TRUE(Same(Ours(l.left, l.top, l.right, l.bottom, clip), expected))
        << "line (" << l.left << "," << l.top << ")-(" << l.right << "," << l.bottom << "), " << expected.size()
        << " points expected";
  }
  // Coordinates at the ends of the range: no overflow, only the clip's pixels.
  const auto huge = Ours(-2000000000, 5, 2000000000, 5, RECT{0, 0, 10, 10});
  ASSERT_EQ(huge.size(), 10u);
  EXPECT_EQ(huge.front().x, 0);
  EXPECT_EQ(huge.back().x, 9);
  EXPECT_TRUE(Ours(0, 0, 50, 50, RECT{10, 10, 10, 20}).empty()) << "empty clip";
  EXPECT_TRUE(Ours(0, 0, 50, 50, RECT{0, 0, 100, 100}).size() == 50u);
  GR_LineDDA(0, 0, 5, 5, 0, 0, 9, 9, HLineDDAProc());  // no callback: nothing happens
}

}  // namespace
