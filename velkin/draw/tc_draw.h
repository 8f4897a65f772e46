#pragma once
/// \file
/// Lines, borders, boxes and fills on either kind of canvas.
#include <windows.h>

#include "platform/ostrel/mygeom.h"
#include "platform/vcl/graphics/color.h"
#include "velkin/draw/tc_draw_types.h"
#include "velkin/velkin_api.h"

namespace Graphics {
class TCanvas;
}
class HCustomCanvas;

/// Lines, outlines, fills, borders and boxes, once for a framework TCanvas and
/// once for HCustomCanvas, with the same names, arguments and pixels. The
/// TCanvas family draws through its Pen and MoveTo/LineTo, the HCustomCanvas
/// family through the canvas's pen and its patterned LineTo. A null canvas
/// draws nothing.
///
/// Conventions of both:
/// - Colours: clNone draws nothing (the current position still moves);
///   clDefault keeps the current pen colour for lines and the current brush
///   colour for fills. Any other colour is used for that call only.
/// - Rectangles exclude their right and bottom edges, except the ellipse
///   routines, whose rectangle is inclusive (as HCustomCanvas::Ellipse).
/// - Lines exclude their end point.
/// - Fills paint solid in the colour, whatever the brush's style, without
///   touching pen or brush (TC_FlatFill on a TCanvas excepted, see there).
/// - TC_Border and TC_Box draw with pen width 1 and put the pen's colour and
///   width back afterwards; the other line routines use the pen as it is.
///
/// TC_Box (see HBOX_Types): the rectangle shrunk by TC_BoxWidth is filled (not
/// for 9, 10, 11), then the frame drawn on rings 0, 1, ... counted inwards from
/// the rectangle's edge. A 3-D frame puts its first colour on the left and top
/// edge (corners top-right and bottom-left included) and its second on the
/// right and bottom edge.
/// TC_Border (see HBRD_Types): one side at a time, each line one pixel, lines
/// from the outer edge inwards for top and left, from the inner edge outwards
/// for bottom and right; alClient draws right, bottom, left, top.
/// TC_LineShape: the line from a to b in the pen colour and a figure of size
/// at b (see HFigureTypes); arrows open by angle degrees each side.
/// TC_ColorBox: a one-pixel outline in `frame` round a fill in `fill`.
/// TC_ColorRect: a frame `width` pixels thick inside the rectangle, painted
/// solid in the colour; width < 1 draws nothing.
/// TC_RoundFill: the rectangle filled with corners rounded by radius (radius
/// < 1: a plain fill).
/// TC_FlatFill: strips darkening towards both edges across the width (or the
/// height when vertical) by shade 1..5; other shades, or a rectangle under 2
/// pixels across, fill plainly. The TCanvas form paints each strip with the
/// canvas's brush (Brush->Color set to the strip's shade, and left at the last
/// one); the HCustomCanvas form through the canvas's Fill.
#define VELKIN_TC_DRAW_FAMILY(Canvas)                                                                          \
  VELKIN_API void TC_MoveTo(Canvas* c, const MyPoint& p);                                                      \
  VELKIN_API void TC_LineTo(Canvas* c, int x, int y, Graphics::TColor color);                                  \
  VELKIN_API void TC_LineTo(Canvas* c, const MyPoint& p, Graphics::TColor color);                              \
  VELKIN_API void TC_Line(Canvas* c, const MyPoint& a, const MyPoint& b, Graphics::TColor color);              \
  VELKIN_API void TC_Line(Canvas* c, int x1, int y1, int x2, int y2, Graphics::TColor color);                  \
  VELKIN_API void TC_Line(Canvas* c, const MyRect& r, Graphics::TColor color);                                 \
  VELKIN_API void TC_Rect(Canvas* c, const MyRect& r, Graphics::TColor color);                                 \
  VELKIN_API void TC_LinePoly(Canvas* c, tagPOINT* points, int count, Graphics::TColor color);                 \
  VELKIN_API void TC_LineShape(Canvas* c, const MyPoint& a, const MyPoint& b, HFigureTypes figure, int size,   \
                               int angle);                                                                     \
  VELKIN_API void TC_Box(Canvas* c, const MyRect& r, Graphics::TColor color, HBOX_Types type);                 \
  VELKIN_API void TC_Border(Canvas* c, int x1, int y1, int x2, int y2, Controls::TAlign side, HBRD_Types type, \
                            Graphics::TColor color);                                                           \
  VELKIN_API void TC_Border(Canvas* c, const MyRect& r, Controls::TAlign side, HBRD_Types type,                \
                            Graphics::TColor color);                                                           \
  VELKIN_API void TC_Border(Canvas* c, const MyRect& r, HBRD_Types type, const TC_Sides& sides,                \
                            Graphics::TColor color);                                                           \
  VELKIN_API void TC_ColorBox(Canvas* c, const MyRect& r, Graphics::TColor frame, Graphics::TColor fill);      \
  VELKIN_API void TC_ColorRect(Canvas* c, const MyRect& r, Graphics::TColor color, int width);                 \
  VELKIN_API void TC_Ellipse(Canvas* c, const MyRect& r, Graphics::TColor color);                              \
  VELKIN_API void TC_FillEllipse(Canvas* c, const MyRect& r, Graphics::TColor color);                          \
  VELKIN_API void TC_FillPoly(Canvas* c, tagPOINT* points, int count, Graphics::TColor color);                 \
  VELKIN_API void TC_Fill(Canvas* c, const MyRect& r, Graphics::TColor color);                                 \
  VELKIN_API void TC_Fill(Canvas* c, int x1, int y1, int x2, int y2, Graphics::TColor color);                  \
  VELKIN_API void TC_RoundFill(Canvas* c, const MyRect& r, int radius, Graphics::TColor color);                \
  VELKIN_API void TC_RoundFill(Canvas* c, int x1, int y1, int x2, int y2, int radius, Graphics::TColor color); \
  VELKIN_API void TC_FlatFill(Canvas* c, const MyRect& r, Graphics::TColor color, int shade, bool vertical);

VELKIN_TC_DRAW_FAMILY(Graphics::TCanvas)
VELKIN_TC_DRAW_FAMILY(HCustomCanvas)

#undef VELKIN_TC_DRAW_FAMILY
