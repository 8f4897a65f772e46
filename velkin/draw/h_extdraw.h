#pragma once
/// \file
/// Caption bars, panels, arrows and pattern fills.
#include "platform/ostrel/mygeom.h"
#include "platform/vcl/controls/controls.h"
#include "platform/vcl/core/ansistring.h"
#include "platform/vcl/core/set.h"
#include "platform/vcl/graphics/color.h"
#include "velkin/velkin_api.h"

namespace Graphics {
class TCanvas;
}

// Window-style caption bars drawn into any rectangle of a canvas, with the
// hit-test that matches them, and small decorations (grip pattern, arrow,
// collapse panel).

/// Parts of a caption bar, used as a set. Buttons sit at the end of the bar in
/// the order close, restore, maximise, minimise, help; one that is not in the
/// set takes no room.
enum HCaptionType : unsigned char {
  HCT_None = 0,
  HCT_Fill = 1,        // fill the bar with the canvas brush colour
  HCT_Gradient = 2,    // fill with a gradient from the brush colour to the button face colour (wins over HCT_Fill)
  HCT_CenterText = 3,  // centre the text of a horizontal bar (vertical text is always centred)
  HCT_Pushed = 4,      // buttons drawn pushed
  HCT_Inactive = 5,    // buttons drawn inactive
  HCT_Flat = 6,        // buttons drawn flat
  HCT_Caption = 7,     // the caption area itself (hit-test result)
  HCT_Edge = 8,        // a raised one-pixel edge round the bar
  HCT_Minimize = 9,
  HCT_Maximize = 10,
  HCT_Restore = 11,
  HCT_Close = 12,
  HCT_Help = 13,
};
using HCaptionTypes = System::Set<HCaptionType, 0, 13>;

/// Geometry of a bar, shared by drawing and hit-testing. Inside a 2-pixel
/// margin the buttons are squares of the inner thickness plus one pixel along
/// the bar, touching, from the end of the bar: the right end of a horizontal
/// bar (alTop, alBottom), the top end of a vertical one (any other align). Text
/// is the inner space the buttons leave.
struct HCaptionLayout {
  int Count = 0;
  HCaptionType Kind[5] = {};
  MyRect Button[5] = {};
  MyRect Text;
};
/// Where the parts of a caption bar go.
VELKIN_API HCaptionLayout TC_WinCaptionLayout(const MyRect& bar, const HCaptionTypes& parts, Controls::TAlign align);

/// The part under p: a button value (9-13), HCT_Caption for any other point of
/// the bar when HCT_Caption is in parts, else 0; 0 for a point outside the bar
/// (right and bottom edges are outside).
VELKIN_API int TC_WinCaptionHitTest(const MyRect& bar, const HCaptionTypes& parts, Controls::TAlign align,
                                    const MyPoint& p);

/// Draws the bar: the background that parts ask for, the buttons with
/// DrawFrameControl (pushed, inactive, flat as parts say), and text in the
/// remaining space in the font's colour, rotated on a vertical bar. When active
/// is false the text takes the inactive-caption text colour instead.
VELKIN_API void TC_WinCaptionDraw(Graphics::TCanvas* canvas, const MyRect& bar, const HCaptionTypes& parts,
                                  const System::AnsiString& text, Controls::TAlign align, bool active);

/// A grip texture: raised dots (a white pixel with a colour pixel to its lower
/// right) every 4 pixels, starting 1 pixel inside r. clNone draws nothing.
VELKIN_API void TC_DrawNSPattern(Graphics::TCanvas* canvas, const MyRect& r, Graphics::TColor color);

/// A solid triangular arrow pointing in direction (alTop, alBottom, alLeft,
/// alRight; any other value draws nothing). Its bounding box starts at (x, y):
/// 2 * size - 1 pixels across the direction and size pixels along it, the tip
/// the single pixel in the middle of the far side. size < 1 or clNone: nothing.
VELKIN_API void TC_DrawArrow(Graphics::TCanvas* canvas, int x, int y, int size, Graphics::TColor color,
                             Controls::TAlign direction);

/// A collapse handle such as splitters carry: r filled with color and framed
/// raised (sunken when pushed), a grip pattern along its length and, for
/// alTop/alBottom/alLeft/alRight, a centred arrow pointing that way with a gap
/// in the grip round it. alTop/alBottom lay the handle out horizontally,
/// alLeft/alRight vertically; any other align follows r's longer side and draws
/// no arrow.
VELKIN_API void TC_DrawNSPanel(Graphics::TCanvas* canvas, const MyRect& r, Graphics::TColor color,
                               Controls::TAlign align, bool pushed);
