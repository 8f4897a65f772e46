#pragma once
#include "platform/vcl/closure.h"
#include "velkin/velkin_api.h"

// Per-pixel callback of GR_LineDDA.
using HLineDDAProc = System::TClosure<void(int x, int y)>;

// Walks the line from (x1, y1) towards (x2, y2), end point excluded, through
// the same pixels and in the same order as the platform's LineDDA, and calls
// proc for each one inside the clip rectangle (left <= x < right, top <= y <
// bottom). Time is bounded by the clip's size, not the line's length.
VELKIN_API void GR_LineDDA(int x1, int y1, int x2, int y2, int clipLeft, int clipTop, int clipRight, int clipBottom,
                           const HLineDDAProc& proc);
