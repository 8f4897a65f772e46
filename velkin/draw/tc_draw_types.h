#pragma once
#include "platform/ostrel/mygeom.h"
#include "platform/vcl/controls/controls.h"
#include "platform/vcl/core/set.h"
#include "velkin/gdi/gdi_blt.h"
#include "velkin/velkin_api.h"

/// \file
/// Styles and sizes shared by the two families of drawing routines (for a
/// framework TCanvas and for HCustomCanvas).

/// Border styles drawn by TC_Border, one side at a time.
enum HBRD_Types : unsigned char {
  HBRD_None = 0,
  HBRD_Lowered = 1,     // grey outside, white inside (sunken)
  HBRD_Raised = 2,      // white outside, grey inside
  HBRD_Double = 3,      // two lines in the colour
  HBRD_Single = 4,      // one line in the colour
  HBRD_ColorWhite = 5,  // colour, white, colour, white from the outside
  HBRD_WhiteColor = 6   // white, colour, white, colour from the outside
};

/// Box styles drawn by TC_Box.
enum HBOX_Types : unsigned char {
  HBOX_Raised = 0,         // 3-D frame, white top-left, grey bottom-right
  HBOX_Lowered = 1,        // 3-D frame, grey top-left, white bottom-right
  HBOX_Etched = 2,         // black outline one pixel in, white outline one pixel out
  HBOX_Black = 3,          // black outline
  HBOX_Thick = 4,          // black outline, two raised frames, black outline
  HBOX_Thicker = 5,        // black outline, three raised frames, black outline
  HBOX_Button = 6,         // black outline round a raised frame
  HBOX_Pushed = 7,         // black outline round a sunken frame
  HBOX_Fill = 8,           // fill only
  HBOX_Nothing = 9,        // nothing at all
  HBOX_Outline = 10,       // outline in the colour, no fill
  HBOX_Outline2 = 11,      // as HBOX_Outline
  HBOX_GroupLowered = 12,  // outlines grey, white, grey, white from the outside
  HBOX_GroupRaised = 13    // outlines white, grey, white, grey from the outside
};

/// Figures TC_LineShape puts at the end of a line. "size" is the figure's
/// length along the line (arrows) or its diameter (the others).
enum HFigureTypes : unsigned char {
  HFT_None = 0,
  HFT_Arrow = 1,      // two strokes back from the end point at +-angle
  HFT_FillArrow = 2,  // the same triangle, filled with the line colour
  HFT_Circle = 3,     // circle outline centred on the end point
  HFT_FillCircle = 4,
  HFT_Square = 5,  // square outline centred on the end point
  HFT_FillSquare = 6,
  HFT_Bar = 7  // a stroke across the line at the end point
};

using TC_Sides = System::Set<Controls::TAlign, Controls::alTop, Controls::alRight>;

/// 2 for types 1-3, 1 for 4, 4 for 5 and 6; 0 for 0 and anything above 6.
VELKIN_API int TC_BorderWidth(HBRD_Types t);
/// 1 for 0, 1, 3, 10, 11; 2 for 2, 6, 7; 4 for 4, 12, 13; 5 for 5; 0 otherwise.
VELKIN_API int TC_BoxWidth(HBOX_Types t);
/// The area inside a border: r shrunk by TC_BorderWidth(t) on each side in
/// sides (right, bottom, left, top in that order).
VELKIN_API void TC_CorrectBorderRect(MyRect& r, const TC_Sides& sides, HBRD_Types t);

/// The shade table of TC_FlatFill for (shade, half): fills *table with the
/// shared table (valid until the next call with another request) and returns
/// its last index. Rebuilt only when the request changes.
VELKIN_API int TC_FlatShadeTable(int shade, int half, const double** table);
