#include "velkin/gdi/gdi_lines.h"

#include <algorithm>
#include <cstdint>

namespace {

// Steps along the major axis. After step i the minor coordinate has moved
// m(i) = max(0, ceil((2 * dMinor * i - dMajor) / (2 * dMajor))) times, which
// lets the walk start at the first step inside the clip instead of at the
// line's start point.
void Walk(int64_t major0, int64_t minor0, int64_t dMajor, int64_t dMinor, int majorAdd, int minorAdd, int64_t lo,
          int64_t hi, int64_t minorLo, int64_t minorHi, bool xMajor, const HLineDDAProc& proc) {
  // Steps whose major coordinate lies in [lo, hi).
  int64_t first, last;
  if (majorAdd > 0) {
    first = lo - major0;
    last = hi - major0;
  } else {
    first = major0 - hi + 1;
    last = major0 - lo + 1;
  }
  first = std::max<int64_t>(first, 0);
  last = std::min<int64_t>(last, dMajor);
  if (first >= last) return;

  const int64_t num = 2 * dMinor * first - dMajor;
  int64_t m = num <= 0 ? 0 : (num + 2 * dMajor - 1) / (2 * dMajor);
  int64_t err = 2 * dMinor * (first + 1) - dMajor - 2 * dMajor * m;
  int64_t major = major0 + majorAdd * first;
  int64_t minor = minor0 + minorAdd * m;
  for (int64_t i = first; i < last; ++i) {
    if (minor >= minorLo && minor < minorHi) {
      if (xMajor)
        proc(static_cast<int>(major), static_cast<int>(minor));
      else
        proc(static_cast<int>(minor), static_cast<int>(major));
    }
    if (err > 0) {
      minor += minorAdd;
      err += 2 * dMinor - 2 * dMajor;
    } else {
      err += 2 * dMinor;
    }
    major += majorAdd;
  }
}

}  // namespace

void GR_LineDDA(int x1, int y1, int x2, int y2, int clipLeft, int clipTop, int clipRight, int clipBottom,
                const HLineDDAProc& proc) {
  if (!proc.IsSet() || clipLeft >= clipRight || clipTop >= clipBottom) return;
  int64_t dx = int64_t{x2} - x1, dy = int64_t{y2} - y1;
  int xadd = 1, yadd = 1;
  if (dx < 0) {
    dx = -dx;
    xadd = -1;
  }
  if (dy < 0) {
    dy = -dy;
    yadd = -1;
  }
  // Ties go to the vertical walk, as LineDDA does.
  if (dx > dy)
    Walk(x1, y1, dx, dy, xadd, yadd, clipLeft, clipRight, clipTop, clipBottom, true, proc);
  else
    Walk(y1, x1, dy, dx, yadd, xadd, clipTop, clipBottom, clipLeft, clipRight, false, proc);
}
