#include "velkin/gdi/gdi_lines.h"

#include <algorithm>

HLineSteps::HLineSteps(int x1, int y1, int x2, int y2, int clipLeft, int clipTop, int clipRight, int clipBottom) {
  int64_t dx = int64_t{x2} - x1, dy = int64_t{y2} - y1;
  int xAdd = 1, yAdd = 1;
  if (dx < 0) dx = -dx, xAdd = -1;
  if (dy < 0) dy = -dy, yAdd = -1;
  // Ties go to the vertical walk, as LineDDA does.
  xMajor_ = dx > dy;
  int64_t lo, hi, minorLo, minorHi;
  if (xMajor_) {
    major0_ = x1, minor0_ = y1, dMajor_ = dx, dMinor_ = dy, majorAdd_ = xAdd, minorAdd_ = yAdd;
    lo = clipLeft, hi = clipRight, minorLo = clipTop, minorHi = clipBottom;
  } else {
    major0_ = y1, minor0_ = x1, dMajor_ = dy, dMinor_ = dx, majorAdd_ = yAdd, minorAdd_ = xAdd;
    lo = clipTop, hi = clipBottom, minorLo = clipLeft, minorHi = clipRight;
  }
  if (lo >= hi || minorLo >= minorHi) return;  // an empty clip: no step inside

  // Steps whose major coordinate lies in [lo, hi).
  int64_t first = majorAdd_ > 0 ? lo - major0_ : major0_ - hi + 1;
  int64_t end = majorAdd_ > 0 ? hi - major0_ : major0_ - lo + 1;
  first = std::max<int64_t>(first, 0);
  end = std::min(end, dMajor_);
  if (first >= end) return;

  // Of those, the ones whose minor coordinate lies in [minorLo, minorHi):
  // the minor moves [movesLo, movesHi), found by bisection as the moves only
  // grow along the walk.
  const int64_t movesLo = minorAdd_ > 0 ? minorLo - minor0_ : minor0_ - minorHi + 1;
  const int64_t movesHi = minorAdd_ > 0 ? minorHi - minor0_ : minor0_ - minorLo + 1;
  auto firstReaching = [this, end](int64_t from, int64_t moves) {
    int64_t a = from, b = end;  // the answer is in [a, b]
    while (a < b) {
      const int64_t m = a + (b - a) / 2;
      if (MinorMoves(m) >= moves)
        b = m;
      else
        a = m + 1;
    }
    return a;
  };
  first_ = MinorMoves(first) >= movesLo ? first : firstReaching(first, movesLo);
  end_ = MinorMoves(end - 1) < movesHi ? end : std::max(first_, firstReaching(first_, movesHi));
}

int64_t HLineSteps::MinorMoves(int64_t step) const {
  // max(0, ceil((2 * dMinor * step - dMajor) / (2 * dMajor))); the product
  // outgrows 64 bits only for lines across most of the coordinate range.
  if (dMinor_ < (int64_t{1} << 31) && step < (int64_t{1} << 31)) {
    const int64_t num = 2 * dMinor_ * step - dMajor_;
    return num <= 0 ? 0 : (num + 2 * dMajor_ - 1) / (2 * dMajor_);
  }
  const __int128 num = __int128{2} * dMinor_ * step - dMajor_;
  return num <= 0 ? 0 : static_cast<int64_t>((num + 2 * dMajor_ - 1) / (2 * dMajor_));
}

MyPoint HLineSteps::At(int64_t step) const {
  const int64_t major = major0_ + majorAdd_ * step, minor = minor0_ + minorAdd_ * MinorMoves(step);
  return xMajor_ ? MyPoint{static_cast<int32_t>(major), static_cast<int32_t>(minor)}
                 : MyPoint{static_cast<int32_t>(minor), static_cast<int32_t>(major)};
}

void HLineSteps::ForEach(const HLineDDAProc& proc) const {
  if (!proc.IsSet() || first_ >= end_) return;
  // From the first step inside on, the classic error term moves the minor
  // coordinate without dividing.
  int64_t moves = MinorMoves(first_);
  int64_t major = major0_ + majorAdd_ * first_, minor = minor0_ + minorAdd_ * moves;
  // The error term stays in (2 * dMinor - 2 * dMajor, 2 * dMinor] however
  // long the line; only its parts may outgrow 64 bits.
  int64_t err = static_cast<int64_t>(__int128{2} * dMinor_ * (first_ + 1) - dMajor_ - __int128{2} * dMajor_ * moves);
  for (int64_t i = first_; i < end_; ++i) {
    if (xMajor_)
      proc(static_cast<int>(major), static_cast<int>(minor));
    else
      proc(static_cast<int>(minor), static_cast<int>(major));
    if (err > 0) {
      minor += minorAdd_;
      err += 2 * dMinor_ - 2 * dMajor_;
    } else {
      err += 2 * dMinor_;
    }
    major += majorAdd_;
  }
}

void GR_LineDDA(int x1, int y1, int x2, int y2, int clipLeft, int clipTop, int clipRight, int clipBottom,
                const HLineDDAProc& proc) {
  HLineSteps(x1, y1, x2, y2, clipLeft, clipTop, clipRight, clipBottom).ForEach(proc);
}
