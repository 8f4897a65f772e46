#include <gtest/gtest.h>

#include <ostream>

#include "platform/vcl/sysutils.h"
#include "velkin/draw/tc_gsr.h"

static std::ostream& operator<<(std::ostream& os, const MyRect& r) {
  return os << "(" << r.left << "," << r.top << ")-(" << r.right << "," << r.bottom << ")";
}

namespace {

struct Case {
  const char* what;
  MyRect area;
  int w, h;
  unsigned long flags;
  MyRect expected;
};

void Check(const Case* cases, size_t n) {
  for (size_t i = 0; i < n; ++i) {
    const Case& c = cases[i];
    const MyRect got = GetScaledRect(c.area, c.w, c.h, c.flags);
    EXPECT_EQ(got, c.expected) << c.what << ": area " << c.area << ", picture " << c.w << "x" << c.h << ", flags 0x"
                               << std::hex << c.flags << std::dec << "\n  actual   " << got << "\n  expected "
                               << c.expected;
  }
}

TEST(TcGsrScaledRect, SizeModes) {
  const Case cases[] = {
      {"fit width", {10, 20, 110, 220}, 50, 30, gsrFitWidth, {10, 20, 110, 80}},
      {"fit width forms the product first", {0, 0, 100, 100}, 3, 2, gsrFitWidth, {0, 0, 100, 66}},
      {"fit height truncates", {10, 20, 110, 220}, 50, 30, gsrFitHeight, {10, 20, 343, 220}},
      {"fit, width wins (height smaller than the area's)", {0, 0, 100, 100}, 200, 100, gsrFit, {0, 0, 100, 50}},
      {"fit, equal height falls back to the height", {10, 10, 110, 60}, 200, 100, gsrFit, {10, 10, 110, 60}},
      {"fit, tall picture fits the height", {0, 0, 100, 100}, 50, 200, gsrFit, {0, 0, 25, 100}},
      {"own size", {5, 6, 105, 106}, 40, 30, gsrOwnSize, {5, 6, 45, 36}},
      {"stretch ignores the picture", {5, 5, 25, 15}, 7, 1000, gsrStretch, {5, 5, 25, 15}},
      {"mode 5 is empty", {10, 10, 110, 60}, 20, 20, 5, {10, 10, 10, 10}},
      {"mode 15 is empty and still aligned", {10, 10, 110, 60}, 20, 20, 15 | gsrRight | gsrBottom, {110, 60, 110, 60}},
      {"no 32-bit overflow in the product", {0, 0, 100000, 100000}, 100000, 30000, gsrFitWidth, {0, 0, 100000, 30000}},
      {"negative area width truncates toward zero", {100, 0, 0, 50}, 3, 1, gsrFitWidth, {100, 0, 0, -33}},
  };
  Check(cases, std::size(cases));
}

TEST(TcGsrScaledRect, PlacementAndCorrections) {
  const MyRect a{0, 0, 100, 100};
  const Case cases[] = {
      {"centred both ways", {10, 10, 110, 60}, 200, 100, gsrFit | gsrHCenter | gsrVCenter, {10, 10, 110, 60}},
      {"centred on a fit", a, 200, 100, gsrFit | gsrVCenter, {0, 25, 100, 75}},
      {"centre offset truncates", {0, 0, 101, 101}, 50, 50, gsrOwnSize | gsrHCenter | gsrVCenter, {25, 25, 75, 75}},
      {"right and bottom", a, 50, 20, gsrOwnSize | gsrRight | gsrBottom, {50, 80, 100, 100}},
      {"wide picture not centred", a, 200, 50, gsrOwnSize | gsrHCenter, {0, 0, 200, 50}},
      {"wide picture right-aligned goes negative", a, 200, 50, gsrOwnSize | gsrRight, {-100, 0, 100, 50}},
      {"negative left clamped", a, 200, 50, gsrOwnSize | gsrRight | gsrClampLeft, {0, 0, 200, 50}},
      {"tall picture not centred", a, 50, 200, gsrOwnSize | gsrVCenter, {0, 0, 50, 200}},
      {"tall picture bottom-aligned goes negative", a, 50, 200, gsrOwnSize | gsrBottom, {0, -100, 50, 100}},
      {"negative top clamped", a, 50, 200, gsrOwnSize | gsrBottom | gsrClampTop, {0, 0, 50, 200}},
      {"clamps leave positive positions alone",
       a,
       50,
       20,
       gsrOwnSize | gsrRight | gsrClampLeft | gsrClampTop,
       {50, 0, 100, 20}},
      {"clamp before the area offset",
       {-50, -50, 50, 50},
       200,
       200,
       gsrOwnSize | gsrRight | gsrBottom | gsrClampLeft | gsrClampTop,
       {-50, -50, 150, 150}},
      {"absolute", {10, 10, 110, 60}, 20, 10, gsrOwnSize | gsrRight, {90, 10, 110, 20}},
      {"relative to the area", {10, 10, 110, 60}, 20, 10, gsrOwnSize | gsrRight | gsrRelative, {80, 0, 100, 10}},
      {"both horizontal bits are no placement", a, 20, 10, gsrOwnSize | 0x30, {0, 0, 20, 10}},
      {"both vertical bits are no placement", a, 20, 10, gsrOwnSize | 0x300, {0, 0, 20, 10}},
  };
  Check(cases, std::size(cases));
}

TEST(TcGsrScaledRect, ZeroSizeAreaIsEmptyAndNotMoved) {
  const Case cases[] = {
      {"zero width", {10, 10, 10, 60}, 20, 20, gsrStretch | gsrRight | gsrBottom, {0, 0, 0, 0}},
      {"zero height", {10, 10, 110, 10}, 20, 20, gsrOwnSize | gsrHCenter, {0, 0, 0, 0}},
      {"zero picture side is harmless then", {30, 30, 30, 30}, 0, 0, gsrFit, {0, 0, 0, 0}},
  };
  Check(cases, std::size(cases));
}

TEST(TcGsrScaledRect, ZeroPictureSideRaisesWhereItDivides) {
  const MyRect a{0, 0, 100, 50};
  struct {
    int w, h;
    unsigned long flags;
  } raising[] = {{0, 10, gsrFitWidth}, {10, 0, gsrFitHeight}, {0, 10, gsrFit}};
  for (auto& r : raising) {
    try {
      GetScaledRect(a, r.w, r.h, r.flags);
      ADD_FAILURE() << "no exception for " << r.w << "x" << r.h << " mode " << r.flags;
    } catch (const Sysutils::Exception& e) {
      EXPECT_STREQ("Division by zero", e.Message.c_str());
    }
  }
  // Where no division is needed a zero side is just a size.
  EXPECT_EQ(GetScaledRect(a, 0, 10, gsrFitHeight), (MyRect{0, 0, 0, 50}));
  EXPECT_EQ(GetScaledRect(a, 0, 0, gsrOwnSize | gsrRight), (MyRect{100, 0, 100, 0}));
  EXPECT_EQ(GetScaledRect(a, 10, 1, gsrFit), (MyRect{0, 0, 100, 10}));
  // A zero height never makes fit fall back to the height division.
  EXPECT_EQ(GetScaledRect(a, 100, 0, gsrFit), (MyRect{0, 0, 100, 0}));
}

}  // namespace
