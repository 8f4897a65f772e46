#pragma once
#include <windows.h>

#include "platform/ostrel/mygeom.h"
#include "platform/vcl/graphics/color.h"
#include "velkin/velkin_api.h"

/// \file
/// Pattern brushes made from colour tables, and frames painted with them.

/// A pattern brush of width x height pixels, its colours read row by row from
/// colors (system colours resolved). The caller owns the brush (DeleteObject).
/// Null when colors is null, a side is not positive, or GDI refuses.
VELKIN_API HBRUSH GDICreateBrush(const Graphics::TColor* colors, int width, int height);

/// Inverts a frame round r with PatBlt(PATINVERT), so painting the same frame
/// twice restores the pixels. Each edge is |width| pixels thick: inside r for a
/// negative width, outside it for a positive one. The top and bottom edges take
/// brush1 and run the frame's full length; the left and right edges take brush2
/// and fill the gap between them. No pixel is painted twice, also when the
/// frame is thicker than half the rectangle. An edge whose brush is null is not
/// painted; a null dc or zero width paints nothing.
VELKIN_API void GDIDrawBrushRect(HDC dc, const MyRect& r, int width, HBRUSH brush1, HBRUSH brush2);
