#pragma once
/// \file
/// Text output on a canvas: clipped, aligned, multi-line.
#include "platform/ostrel/mygeom.h"
#include "platform/vcl/core/ansistring.h"
#include "platform/vcl/graphics/color.h"
#include "velkin/velkin_api.h"

namespace Graphics {
class TCanvas;
}
class HCustomCanvas;

/// Text output for both canvas families, in the canvas's font, on a
/// transparent background; the context's text colour and background mode are
/// as before afterwards. A null canvas draws nothing.
///
/// flags are the platform's DrawText flags (DT_CENTER, DT_RIGHT, DT_VCENTER,
/// DT_BOTTOM, DT_SINGLELINE, DT_WORDBREAK, DT_END_ELLIPSIS, DT_NOPREFIX...);
/// DT_VCENTER and DT_BOTTOM imply DT_SINGLELINE, as they mean nothing without
/// it. Text never leaves the rectangle. color: clNone and clDefault keep the
/// font's colour, any other is used for this call.
///
/// TC_TextOutV writes the text rotated to read upwards, in a rotated copy of the
/// canvas's font. The flags keep their sense relative to the text: DT_LEFT
/// (0) starts it at the rectangle's bottom, DT_CENTER centres it along the
/// height, DT_RIGHT ends it at the top; DT_TOP (0) puts the text's top against
/// the rectangle's left edge, DT_VCENTER centres it across, DT_BOTTOM against
/// the right edge. Only single lines.
#define VELKIN_TC_TEXT_FAMILY(Canvas)                                                                             \
  VELKIN_API void TC_TextOut(Canvas* c, const MyRect& r, const System::AnsiString& text, Graphics::TColor color,  \
                             unsigned flags);                                                                     \
  /* In the font's colour; with DT_CALCRECT only measures. r receives what DrawText reports. */                   \
  VELKIN_API void TC_TextOut(Canvas* c, MyRect& r, const System::AnsiString& text, unsigned flags);               \
  /* At (x, y), the text's top-left corner, unclipped. */                                                         \
  VELKIN_API void TC_TextOut(Canvas* c, int x, int y, const System::AnsiString& text);                            \
  VELKIN_API void TC_TextOutV(Canvas* c, const MyRect& r, const System::AnsiString& text, Graphics::TColor color, \
                              unsigned flags);

VELKIN_TC_TEXT_FAMILY(Graphics::TCanvas)
VELKIN_TC_TEXT_FAMILY(HCustomCanvas)

#undef VELKIN_TC_TEXT_FAMILY
