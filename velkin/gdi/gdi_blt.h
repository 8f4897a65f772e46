#pragma once
/// \file
/// Block transfers, plain and transparent.
#include "platform/ostrel/mygeom.h"
#include "platform/vcl/graphics/color.h"
#include "velkin/velkin_api.h"

namespace Graphics {
class TBitmap;
}

/// How GDI_Blt places a bitmap in the target rectangle.
enum HBT_Types : unsigned char {
  HBT_Copy = 0,     // own size at the rectangle's top-left corner, cut to the rectangle
  HBT_Center = 1,   // own size, centred, cut to the rectangle
  HBT_Tile = 2,     // repeated from the top-left corner over the rectangle
  HBT_Stretch = 3,  // stretched to the rectangle
  HBT_Fit = 4       // scaled to fit keeping the aspect, centred
};

/// Added to a placement mode: pixels of the given colour are left out.
constexpr unsigned HBT_Transparent = 0x100;

/// Copies bitmap into r of dc placed by the low byte of mode (an HBT_Types;
/// unknown values copy as HBT_Copy). With HBT_Transparent in mode the pixels of
/// colour `transparent` are not copied (Gdi_ext::StretchBltTransparent of the
/// helper package). Nothing for a null
/// dc, a null or empty bitmap or an empty rectangle.
VELKIN_API void GDI_Blt(void* dc, Graphics::TBitmap* bitmap, const MyRect& r, unsigned mode,
                        Graphics::TColor transparent);

/// Whether GDI32 exports GdiTransparentBlt (the mask fallback is used if not).
VELKIN_API bool GDI_HasTransparentBlt();
