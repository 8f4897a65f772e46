#pragma once
#include "platform/ostrel/mygeom.h"
#include "velkin/velkin_api.h"

/// \file
/// Where a picture of a given size goes inside an area.

/// Size mode, bits 0-3 of the flags.
constexpr unsigned long gsrFitWidth = 0x0;   // width = area width, height kept in proportion
constexpr unsigned long gsrFitHeight = 0x1;  // height = area height, width kept in proportion
constexpr unsigned long gsrFit = 0x2;        // the larger of the two fits that stays inside the area's height
constexpr unsigned long gsrOwnSize = 0x3;    // the picture's own size
constexpr unsigned long gsrStretch = 0x4;    // exactly the area's size
constexpr unsigned long gsrSizeMask = 0xF;   // modes 5-15 give an empty result
/// Horizontal placement, bits 4-7 (left when none).
constexpr unsigned long gsrHCenter = 0x10;  // centred, only when the area is wider than the result
constexpr unsigned long gsrRight = 0x20;    // right-aligned, also when the result is wider
constexpr unsigned long gsrHMask = 0xF0;    // other values: left
/// Vertical placement, bits 8-11 (top when none).
constexpr unsigned long gsrVCenter = 0x100;  // centred, only when the area is taller than the result
constexpr unsigned long gsrBottom = 0x200;   // bottom-aligned, also when the result is taller
constexpr unsigned long gsrVMask = 0xF00;    // other values: top
/// Corrections.
constexpr unsigned long gsrClampLeft = 0x1000;  // a negative left is shifted to 0
constexpr unsigned long gsrClampTop = 0x2000;   // a negative top is shifted to 0
constexpr unsigned long gsrRelative = 0x4000;   // relative to the area's top-left corner

/// The rectangle a w x h picture takes in area under flags. An area of zero
/// width or height gives (0, 0, 0, 0) whatever the flags. Proportions are
/// integer products divided with truncation toward zero. A mode that has to
/// divide by a zero picture side raises Sysutils::Exception "Division by zero".
VELKIN_API MyRect GetScaledRect(const MyRect& area, int w, int h, unsigned long flags);
