#pragma once
/// \file
/// Unit Gdi_ext: block transfers that leave out one colour.
#include <windows.h>

#include "platform/pellum/pellum_api.h"

namespace Gdi_ext {

/// Copies the rectangle (sx, sy, sw, sh) of src into (x, y, w, h) of dc,
/// stretched to fit, leaving the target as it was where the source has the
/// colour transparent. Uses GDI32's GdiTransparentBlt, looked up at run time,
/// or a monochrome mask where it is missing. Nothing for empty rectangles.
PELLUM_API void StretchBltTransparent(HDC dc, int x, int y, int w, int h, HDC src, int sx, int sy, int sw, int sh,
                                      COLORREF transparent);
/// Draws bitmap at (x, y) of dc at its own size, leaving out the colour
/// transparent. Nothing for a null dc or bitmap.
PELLUM_API void DrawTransparentBitmap(HDC dc, HBITMAP bitmap, int x, int y, COLORREF transparent);

///@{
/// Whether GDI32 has GdiTransparentBlt; and whether it is used when it does
/// (true at first: false makes every transparent transfer use the mask, as on
/// systems without the routine).
PELLUM_API bool HasTransparentBlt();
PELLUM_API bool GetUseTransparentBlt();
PELLUM_API void SetUseTransparentBlt(bool value);
///@}

}  // namespace Gdi_ext
