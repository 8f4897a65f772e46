#include "velkin/draw/tc_gsr.h"

#include <cstdint>

#include "platform/vcl/core/sysutils.h"

namespace {

// a * b / c with the product first, truncated toward zero as integer division
// does; 64 bits so large areas do not overflow in between.
int32_t MulDivTrunc(int32_t a, int32_t b, int32_t c) {
  if (c == 0) throw Sysutils::Exception("Division by zero");
  return static_cast<int32_t>(static_cast<int64_t>(a) * b / c);
}

}  // namespace

MyRect GetScaledRect(const MyRect& area, int w, int h, unsigned long flags) {
  MyRect r;
  const int32_t W = area.Width(), H = area.Height();
  if (W == 0 || H == 0) return r;

  switch (flags & gsrSizeMask) {
    case gsrFitWidth:
      r.right = W;
      r.bottom = MulDivTrunc(W, h, w);
      break;
    case gsrFitHeight:
      r.right = MulDivTrunc(H, w, h);
      r.bottom = H;
      break;
    case gsrFit:
      r.bottom = MulDivTrunc(W, h, w);
      if (r.bottom < H) {
        r.right = W;
      } else {
        r.right = MulDivTrunc(H, w, h);
        r.bottom = H;
      }
      break;
    case gsrOwnSize:
      r.right = w;
      r.bottom = h;
      break;
    case gsrStretch:
      r.right = W;
      r.bottom = H;
      break;
    default:
      break;
  }

  const int32_t rw = r.Width(), rh = r.Height();
  int32_t dx = 0, dy = 0;
  // Placements are field values: a field holding any other value leaves the
  // result at the left or top.
  if ((flags & gsrHMask) == gsrHCenter && W > rw) dx = (W - rw) / 2;
  if ((flags & gsrHMask) == gsrRight) dx = W - rw;
  r.left += dx;
  r.right += dx;
  if ((flags & gsrClampLeft) && r.left < 0) {
    r.right -= r.left;
    r.left = 0;
  }
  if ((flags & gsrVMask) == gsrVCenter && H > rh) dy = (H - rh) / 2;
  if ((flags & gsrVMask) == gsrBottom) dy = H - rh;
  r.top += dy;
  r.bottom += dy;
  if ((flags & gsrClampTop) && r.top < 0) {
    r.bottom -= r.top;
    r.top = 0;
  }
  if (!(flags & gsrRelative)) {
    r.left += area.left;
    r.right += area.left;
    r.top += area.top;
    r.bottom += area.top;
  }
  return r;
}
