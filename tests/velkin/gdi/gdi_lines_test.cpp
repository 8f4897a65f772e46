// The line stepper: the platform's pixels in the platform's order, only those
// inside the clip.
#include "velkin/gdi/gdi_lines.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
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

// The stepper's pixels by step are those its walk (GR_LineDDA) visits, for
// short lines and for lines across the whole coordinate range.
TEST(HLineSteps, StepsAreThePixelsOfTheWalk) {
  struct Walked {
    std::vector<MyPoint> points;
    void Add(int x, int y) { points.push_back(MyPoint{x, y}); }
  };
  std::mt19937 random(11);
  std::uniform_int_distribution<int> coord(-70, 70);
  std::vector<std::pair<MyRect, MyRect>> cases;
  for (int i = 0; i < 300; ++i)
    cases.push_back(
        {MyRect{coord(random), coord(random), coord(random), coord(random)},
         MyRect{coord(random) / 2 - 20, coord(random) / 2 - 20, coord(random) / 2 + 20, coord(random) / 2 + 20}});
  const int big = 2000000000;
  const size_t firstBig = cases.size();
  cases.push_back({MyRect{-big, -big, big, big - 7}, MyRect{-5, -5, 5, 5}});
  cases.push_back({MyRect{big, -big + 1, -big, big}, MyRect{-3, -8, 4, 8}});
  cases.push_back({MyRect{-big, 1, big, -1}, MyRect{-big, -1, -big + 6, 2}});
  cases.push_back({MyRect{-big, -big, -big + 1, big}, MyRect{-big, big - 5, -big + 2, big}});
  for (size_t k = 0; k < cases.size(); ++k) {
    const auto& [l, clip] = cases[k];
    const HLineSteps steps(l.left, l.top, l.right, l.bottom, clip.left, clip.top, clip.right, clip.bottom);
    Walked walked;
    steps.ForEach(HLineDDAProc(&walked, &Walked::Add));
    std::vector<MyPoint> byStep;
    for (int64_t i = steps.GetFirst(); i < steps.GetEnd(); ++i) byStep.push_back(steps.At(i));
    if (k >= firstBig) {
      EXPECT_FALSE(byStep.empty()) << "line " << l << " clip " << clip << ": crosses the clip";
    }
    EXPECT_TRUE(byStep == walked.points) << "line " << l << " clip " << clip << ": " << byStep.size()
                                         << " pixels by step, " << walked.points.size() << " walked";
  }
}

}  // namespace
