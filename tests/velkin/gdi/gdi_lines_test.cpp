// The line stepper: the platform's pixels in the platform's order, only those
// inside the clip.
#include "velkin/gdi/gdi_lines.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <ostream>
#include <random>
#include <utility>
#include <vector>

#include "platform/ostrel/mygeom.h"

inline std::ostream& operator<<(std::ostream& os, const MyRect& r) {
  return os << "(" << r.left << "," << r.top << ")-(" << r.right << "," << r.bottom << ")";
}

namespace {

using Points = std::vector<std::pair<int, int>>;

struct Collector {
  Points points;
  void Add(int x, int y) { points.emplace_back(x, y); }
};

void CALLBACK Platform(int x, int y, LPARAM data) { reinterpret_cast<Points*>(data)->emplace_back(x, y); }

// The platform's points of the line that fall inside the clip, in order.
Points Reference(const MyRect& l, const MyRect& clip) {
  Points all, inside;
  LineDDA(l.left, l.top, l.right, l.bottom, Platform, reinterpret_cast<LPARAM>(&all));
  for (auto [x, y] : all)
    if (x >= clip.left && x < clip.right && y >= clip.top && y < clip.bottom) inside.emplace_back(x, y);
  return inside;
}

Points Ours(const MyRect& l, const MyRect& clip) {
  Collector c;
  GR_LineDDA(l.left, l.top, l.right, l.bottom, clip.left, clip.top, clip.right, clip.bottom,
             HLineDDAProc(&c, &Collector::Add));
  return c.points;
}

TEST(GR_LineDDA, SamePixelsAndOrderAsThePlatformsLineDDA) {
  std::mt19937 random(7);
  std::uniform_int_distribution<int> coord(-60, 60);
  // Every octant, ties, single steps and points; random lines; lines far
  // longer than the clip, which must start inside it at the right step.
  std::vector<MyRect> lines = {{0, 0, 0, 0},       {0, 0, 1, 0},
                               {0, 0, 0, 1},       {0, 0, 10, 10},
                               {0, 0, -10, 10},    {0, 0, 10, 3},
                               {0, 0, -10, 3},     {0, 0, 3, -10},
                               {0, 0, -3, -10},    {5, 5, -7, 2},
                               {0, 0, 100000, 37}, {100000, 37, 0, 0},
                               {3, 0, 2000, 300},  {1000, -50000, 1003, 50000}};
  for (int i = 0; i < 400; ++i) lines.push_back(MyRect{coord(random), coord(random), coord(random), coord(random)});
  for (const MyRect& l : lines)
    for (const MyRect& clip : {MyRect{-1000, -1000, 1000, 1000}, MyRect{-13, -7, 17, 29}, MyRect{990, 0, 1010, 400}}) {
      const Points expected = Reference(l, clip), actual = Ours(l, clip);
      EXPECT_TRUE(actual == expected) << "line " << l << " clip " << clip << ": " << actual.size()
                                      << " points, expected " << expected.size();
    }
  // Coordinates at the ends of the range: no overflow, only the clip's pixels.
  EXPECT_EQ(Ours(MyRect{-2000000000, 5, 2000000000, 5}, MyRect{0, 0, 10, 10}),
            (Points{{0, 5}, {1, 5}, {2, 5}, {3, 5}, {4, 5}, {5, 5}, {6, 5}, {7, 5}, {8, 5}, {9, 5}}));
  EXPECT_EQ(Ours(MyRect{0, 0, 50, 50}, MyRect{10, 10, 10, 20}).size(), 0u) << "empty clip";
  GR_LineDDA(0, 0, 5, 5, 0, 0, 9, 9, HLineDDAProc());  // no callback: nothing happens
}

}  // namespace
