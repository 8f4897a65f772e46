#include "velkin/draw/tc_draw_types.h"

#include <algorithm>
#include <cmath>
#include <numbers>

int TC_BorderWidth(HBRD_Types t) {
  switch (t) {
    case 1:
    case 2:
    case 3:
      return 2;
    case 4:
      return 1;
    case 5:
    case 6:
      return 4;
    default:
      return 0;
  }
}

int TC_BoxWidth(HBOX_Types t) {
  switch (t) {
    case 0:
    case 1:
    case 3:
    case 10:
    case 11:
      return 1;
    case 2:
    case 6:
    case 7:
      return 2;
    case 4:
    case 12:
    case 13:
      return 4;
    case 5:
      return 5;
    default:
      return 0;
  }
}

void TC_CorrectBorderRect(MyRect& r, const TC_Sides& sides, HBRD_Types t) {
  const int w = TC_BorderWidth(t);
  if (sides.Contains(Controls::alRight)) r.right -= w;
  if (sides.Contains(Controls::alBottom)) r.bottom -= w;
  if (sides.Contains(Controls::alLeft)) r.left += w;
  if (sides.Contains(Controls::alTop)) r.top += w;
}

namespace {
double shadeTable[50];
int cachedShade = 0;
int cachedCount = -1;
}  // namespace

int TC_FlatShadeTable(int shade, int half, const double** table) {
  *table = shadeTable;
  // The stored count never exceeds 49, so half >= 50 always rebuilds (kept so).
  if (shade == cachedShade && std::min(half, 50) == cachedCount) return cachedCount;
  const int n = std::min(half, 49);
  const double a = std::numbers::pi / (7 - shade);
  const double step = a / n;
  // The bracket is single precision, as it always was.
  const float bracket = static_cast<float>(7 - shade) * 0.5f - 1.0f;
  for (int i = 0; i <= n; ++i) shadeTable[i] = std::sin(i * step + static_cast<double>(bracket) * a);
  cachedShade = shade;
  cachedCount = n;
  return n;
}
