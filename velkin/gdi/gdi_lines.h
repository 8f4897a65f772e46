#pragma once
/// \file
/// Line stepping pixel by pixel, clipped.
#include <cstdint>

#include "platform/ostrel/mygeom.h"
#include "platform/vcl/core/closure.h"
#include "velkin/velkin_api.h"

/// Per-pixel callback of GR_LineDDA.
using HLineDDAProc = System::TClosure<void(int x, int y)>;

/// Walks the line from (x1, y1) towards (x2, y2), end point excluded, through
/// the same pixels and in the same order as the platform's LineDDA, and calls
/// proc for each one inside the clip rectangle (left <= x < right, top <= y <
/// bottom). Time is bounded by the clip's size, not the line's length.
VELKIN_API void GR_LineDDA(int x1, int y1, int x2, int y2, int clipLeft, int clipTop, int clipRight, int clipBottom,
                           const HLineDDAProc& proc);

/// The pixels GR_LineDDA visits, by step: step i of the walk from (x1, y1) is
/// At(i), and the steps inside the clip are GetFirst() up to GetEnd() (a
/// straight line crosses a rectangle once, so they follow one another). Lets a
/// caller that only needs some of the pixels (the ends of dashes) skip the rest.
class VELKIN_API HLineSteps {
 public:
  HLineSteps(int x1, int y1, int x2, int y2, int clipLeft, int clipTop, int clipRight, int clipBottom);

  int64_t GetFirst() const { return first_; }
  int64_t GetEnd() const { return end_; }
  MyPoint At(int64_t step) const;
  /// proc for each step inside, in order (what GR_LineDDA does).
  void ForEach(const HLineDDAProc& proc) const;

 private:
  /// Times the minor coordinate has moved after `step` steps.
  int64_t MinorMoves(int64_t step) const;

  int64_t major0_ = 0, minor0_ = 0, dMajor_ = 0, dMinor_ = 0;
  int majorAdd_ = 1, minorAdd_ = 1;
  bool xMajor_ = false;
  int64_t first_ = 0, end_ = 0;
};
