#include "velkin/gdi/gdi_blt.h"

#include <windows.h>

#include <algorithm>

#include "platform/ostrel/dc_changer.h"
#include "platform/pellum/gdi_ext.h"
#include "platform/vcl/graphics/bitmap.h"

namespace {

struct Piece {
  int dx, dy, dw, dh;  // target
  int sx, sy, sw, sh;  // source
};

void Copy(HDC dc, HDC src, const Piece& p, bool transparent, COLORREF key) {
  if (p.dw <= 0 || p.dh <= 0 || p.sw <= 0 || p.sh <= 0) return;
  if (transparent) {
    Gdi_ext::StretchBltTransparent(dc, p.dx, p.dy, p.dw, p.dh, src, p.sx, p.sy, p.sw, p.sh, key);
  } else if (p.dw == p.sw && p.dh == p.sh) {
    BitBlt(dc, p.dx, p.dy, p.dw, p.dh, src, p.sx, p.sy, SRCCOPY);
  } else {
    DCChanger use(dc);
    use.SetStretchBltMode(COLORONCOLOR);
    StretchBlt(dc, p.dx, p.dy, p.dw, p.dh, src, p.sx, p.sy, p.sw, p.sh, SRCCOPY);
  }
}

// Own size inside r: centred on each axis or from its start, cut to r.
Piece Placed(const MyRect& r, int bw, int bh, bool centre) {
  const int rw = r.Width(), rh = r.Height();
  Piece p{};
  p.dw = p.sw = std::min(bw, rw);
  p.dh = p.sh = std::min(bh, rh);
  p.dx = r.left + (centre && rw > bw ? (rw - bw) / 2 : 0);
  p.dy = r.top + (centre && rh > bh ? (rh - bh) / 2 : 0);
  p.sx = centre && bw > rw ? (bw - rw) / 2 : 0;
  p.sy = centre && bh > rh ? (bh - rh) / 2 : 0;
  return p;
}

}  // namespace

bool GDI_HasTransparentBlt() { return Gdi_ext::HasTransparentBlt(); }

void GDI_Blt(void* target, Graphics::TBitmap* bitmap, const MyRect& r, unsigned mode, Graphics::TColor transparent) {
  HDC dc = static_cast<HDC>(target);
  if (!dc || !bitmap || bitmap->GetEmpty() || r.IsEmpty()) return;
  HDC src = bitmap->GetCanvas()->GetHandle();
  if (!src) return;
  const int bw = bitmap->GetWidth(), bh = bitmap->GetHeight();
  const bool trans = (mode & HBT_Transparent) != 0;
  const COLORREF key = static_cast<COLORREF>(Graphics::ColorToRGB(transparent)) & 0xFFFFFF;
  switch (static_cast<HBT_Types>(mode & 0xFF)) {
    case HBT_Center:
      Copy(dc, src, Placed(r, bw, bh, true), trans, key);
      break;
    case HBT_Tile:
      for (int y = r.top; y < r.bottom; y += bh)
        for (int x = r.left; x < r.right; x += bw)
          Copy(dc, src, Placed(MyRect{x, y, r.right, r.bottom}, bw, bh, false), trans, key);
      break;
    case HBT_Stretch:
      Copy(dc, src, Piece{r.left, r.top, r.Width(), r.Height(), 0, 0, bw, bh}, trans, key);
      break;
    case HBT_Fit: {
      // The larger scale that still fits: compare bw/bh with rw/rh exactly.
      const long long rw = r.Width(), rh = r.Height();
      int w, h;
      if (bw * rh >= bh * rw) {
        w = static_cast<int>(rw);
        h = static_cast<int>(rw * bh / bw);
      } else {
        w = static_cast<int>(rh * bw / bh);
        h = static_cast<int>(rh);
      }
      Copy(dc, src,
           Piece{r.left + (static_cast<int>(rw) - w) / 2, r.top + (static_cast<int>(rh) - h) / 2, w, h, 0, 0, bw, bh},
           trans, key);
      break;
    }
    default:
      Copy(dc, src, Placed(r, bw, bh, false), trans, key);
      break;
  }
}
