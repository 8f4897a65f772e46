// The line stepper: the platform's pixels in the platform's order, only those
// inside the clip, and by step the same pixels as walked.
#include "velkin/gdi/gdi_lines.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <random>
#include <utility>
#include <vector>

#include "tests/velkin/gdi/gdi_fixtures.h"

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

Points Walked(const MyRect& l, const MyRect& clip) {
  Collector c;
  GR_LineDDA(l.left, l.top, l.right, l.bottom, clip.left, clip.top, clip.right, clip.bottom,
             HLineDDAProc(&c, &Collector::Add));
  return c.points;
}

Points ByStep(const MyRect& l, const MyRect& clip) {
  const HLineSteps steps(l.left, l.top, l.right, l.bottom, clip.left, clip.top, clip.right, clip.bottom);
  Collector walked, byStep;
  steps.ForEach(HLineDDAProc(&walked, &Collector::Add));
  for (int64_t i = steps.GetFirst(); i < steps.GetEnd(); ++i) byStep.Add(steps.At(i).x, steps.At(i).y);
  EXPECT_TRUE(byStep.points == walked.points) << "line " << l << " clip " << clip << ": " << byStep.points.size()
                                              << " pixels by step, " << walked.points.size() << " walked";
  return byStep.points;
}

TEST(GR_LineDDA, SamePixelsAndOrderAsThePlatformsLineDDA) {
  std::mt19937 random(7);
  std::uniform_int_distribution<int> coord(-60, 60);
  // Every octant, ties, single steps and points; random lines; lines far
  // longer than the clip, which must start inside it at the right step.
  // clang-format off
  std::vector<MyRect> lines = {{0, 0, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}, {0, 0, 10, 10}, {0, 0, -10, 10},
      {0, 0, 10, 3}, {0, 0, -10, 3}, {0, 0, 3, -10}, {0, 0, -3, -10}, {5, 5, -7, 2}, {0, 0, 100000, 37},
      {100000, 37, 0, 0}, {3, 0, 2000, 300}, {1000, -50000, 1003, 50000}};
  // clang-format on
  for (int i = 0; i < 400; ++i) lines.push_back(MyRect{coord(random), coord(random), coord(random), coord(random)});
  for (const MyRect& l : lines)
    for (const MyRect& clip : {MyRect{-1000, -1000, 1000, 1000}, MyRect{-13, -7, 17, 29}, MyRect{990, 0, 1010, 400}}) {
      const Points expected = Reference(l, clip), actual = Walked(l, clip);
      EXPECT_TRUE(actual == expected) << "line " << l << " clip " << clip << ": " << actual.size()
                                      << " points, expected " << expected.size();
      ByStep(l, clip);
    }
  // Coordinates at the ends of the range: no overflow, only the clip's pixels.
  EXPECT_EQ(Walked(MyRect{-2000000000, 5, 2000000000, 5}, MyRect{0, 0, 10, 10}),
            (Points{{0, 5}, {1, 5}, {2, 5}, {3, 5}, {4, 5}, {5, 5}, {6, 5}, {7, 5}, {8, 5}, {9, 5}}));
  EXPECT_EQ(Walked(MyRect{0, 0, 50, 50}, MyRect{10, 10, 10, 20}).size(), 0u) << "empty clip";
  GR_LineDDA(0, 0, 5, 5, 0, 0, 9, 9, HLineDDAProc());  // no callback: nothing happens
}

// The stepper's pixels by step are those its walk visits, for short lines
// under random clips and for lines across the whole coordinate range.
TEST(HLineSteps, StepsAreThePixelsOfTheWalk) {
  std::mt19937 random(11);
  std::uniform_int_distribution<int> coord(-70, 70);
  for (int i = 0; i < 300; ++i)
    ByStep(MyRect{coord(random), coord(random), coord(random), coord(random)},
           MyRect{coord(random) / 2 - 20, coord(random) / 2 - 20, coord(random) / 2 + 20, coord(random) / 2 + 20});
  const int big = 2000000000;
  const std::pair<MyRect, MyRect> across[] = {
      {{-big, -big, big, big - 7}, {-5, -5, 5, 5}},
      {{big, -big + 1, -big, big}, {-3, -8, 4, 8}},
      {{-big, 1, big, -1}, {-big, -1, -big + 6, 2}},
      {{-big, -big, -big + 1, big}, {-big, big - 5, -big + 2, big}},
  };
  for (const auto& [l, clip] : across) EXPECT_FALSE(ByStep(l, clip).empty()) << "line " << l << " clip " << clip;
}

}  // namespace
