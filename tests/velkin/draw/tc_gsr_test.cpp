// Where a picture of w x h goes in an area: size modes, placements, clamps,
// and sizes of zero.
#include <gtest/gtest.h>

#include <tuple>

#include "platform/vcl/core/sysutils.h"
#include "tests/velkin/draw/draw_pixels.h"
#include "velkin/draw/tc_gsr.h"

namespace {

TEST(GetScaledRect, SizeModesPlacementsCorrectionsAndZeroSizes) {
  const MyRect a{0, 0, 100, 100}, b{10, 10, 110, 60};
  const struct {
    MyRect area;
    int w, h;
    unsigned long flags;
    MyRect expected;
  } cases[] = {
      // clang-format off
      // Sizes: the product is formed first and truncated, in 64 bits.
      {{10, 20, 110, 220}, 50, 30, gsrFitWidth, {10, 20, 110, 80}},
      {a, 3, 2, gsrFitWidth, {0, 0, 100, 66}},
      {{10, 20, 110, 220}, 50, 30, gsrFitHeight, {10, 20, 343, 220}},
      {{0, 0, 100000, 100000}, 100000, 30000, gsrFitWidth, {0, 0, 100000, 30000}},
      {{100, 0, 0, 50}, 3, 1, gsrFitWidth, {100, 0, 0, -33}},  // toward zero
      // Fit: the width fit unless its height is not below the area's.
      {a, 200, 100, gsrFit, {0, 0, 100, 50}},
      {b, 200, 100, gsrFit, {10, 10, 110, 60}},
      {a, 50, 200, gsrFit, {0, 0, 25, 100}},
      {{5, 6, 105, 106}, 40, 30, gsrOwnSize, {5, 6, 45, 36}},
      {{5, 5, 25, 15}, 7, 1000, gsrStretch, {5, 5, 25, 15}},
      {b, 20, 20, 5, {10, 10, 10, 10}},  // modes 5-15 are empty, still placed
      {b, 20, 20, 15 | gsrRight | gsrBottom, {110, 60, 110, 60}},
      // Placement: centring only into more room, truncated; right and bottom
      // also when the result is larger; both bits of a pair are no placement.
      {b, 200, 100, gsrFit | gsrHCenter | gsrVCenter, {10, 10, 110, 60}},
      {a, 200, 100, gsrFit | gsrVCenter, {0, 25, 100, 75}},
      {{0, 0, 101, 101}, 50, 50, gsrOwnSize | gsrHCenter | gsrVCenter, {25, 25, 75, 75}},
      {a, 50, 20, gsrOwnSize | gsrRight | gsrBottom, {50, 80, 100, 100}},
      {a, 200, 50, gsrOwnSize | gsrHCenter, {0, 0, 200, 50}},
      {a, 200, 50, gsrOwnSize | gsrRight, {-100, 0, 100, 50}},
      {a, 50, 200, gsrOwnSize | gsrVCenter, {0, 0, 50, 200}},
      {a, 50, 200, gsrOwnSize | gsrBottom, {0, -100, 50, 100}},
      {a, 20, 10, gsrOwnSize | 0x30, {0, 0, 20, 10}},
      {a, 20, 10, gsrOwnSize | 0x300, {0, 0, 20, 10}},
      // Clamps move only negative positions, before the area offset.
      {a, 200, 50, gsrOwnSize | gsrRight | gsrClampLeft, {0, 0, 200, 50}},
      {a, 50, 200, gsrOwnSize | gsrBottom | gsrClampTop, {0, 0, 50, 200}},
      {a, 50, 20, gsrOwnSize | gsrRight | gsrClampLeft | gsrClampTop, {50, 0, 100, 20}},
      {{-50, -50, 50, 50}, 200, 200, gsrOwnSize | gsrRight | gsrBottom | gsrClampLeft | gsrClampTop, {-50, -50, 150, 150}},
      {b, 20, 10, gsrOwnSize | gsrRight, {90, 10, 110, 20}},
      {b, 20, 10, gsrOwnSize | gsrRight | gsrRelative, {80, 0, 100, 10}},
      // A zero-size area gives an empty rectangle at the origin.
      {{10, 10, 10, 60}, 20, 20, gsrStretch | gsrRight | gsrBottom, {0, 0, 0, 0}},
      {{10, 10, 110, 10}, 20, 20, gsrOwnSize | gsrHCenter, {0, 0, 0, 0}},
      {{30, 30, 30, 30}, 0, 0, gsrFit, {0, 0, 0, 0}},
      // A zero picture side is just a size where nothing divides by it.
      {{0, 0, 100, 50}, 0, 10, gsrFitHeight, {0, 0, 0, 50}},
      {{0, 0, 100, 50}, 0, 0, gsrOwnSize | gsrRight, {100, 0, 100, 0}},
      {{0, 0, 100, 50}, 10, 1, gsrFit, {0, 0, 100, 10}},
      {{0, 0, 100, 50}, 100, 0, gsrFit, {0, 0, 100, 0}},  // no fall-back to the height division
      // clang-format on
  };
  for (const auto& c : cases)
    EXPECT_EQ(GetScaledRect(c.area, c.w, c.h, c.flags), c.expected)
        << "area " << c.area << ", picture " << c.w << "x" << c.h << ", flags 0x" << std::hex << c.flags;
  // A zero picture side raises where it divides.
  for (auto [w, h, flags] :
       {std::tuple{0, 10, gsrFitWidth}, std::tuple{10, 0, gsrFitHeight}, std::tuple{0, 10, gsrFit}}) {
    std::string message = "no exception";
    try {
      GetScaledRect(MyRect{0, 0, 100, 50}, w, h, flags);
    } catch (const Sysutils::Exception& e) {
      message = e.Message.c_str();
    }
    EXPECT_EQ(message, "Division by zero") << w << "x" << h << " mode " << flags;
  }
}

}  // namespace
