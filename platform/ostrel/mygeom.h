#pragma once
/// \file
/// Points and rectangles in pixels.
#include <cstdint>

/// Rectangle and point of signed 32-bit coordinates; the layout is that of the
/// Win32 RECT and POINT, so pointers convert with reinterpret_cast.
struct MyRect {
  int32_t left = 0, top = 0, right = 0, bottom = 0;

  int32_t Width() const { return right - left; }
  int32_t Height() const { return bottom - top; }
  bool IsEmpty() const { return right <= left || bottom <= top; }
  bool operator==(const MyRect&) const = default;
};

/// A point; the layout of the Win32 POINT.
struct MyPoint {
  int32_t x = 0, y = 0;
  bool operator==(const MyPoint&) const = default;
};
