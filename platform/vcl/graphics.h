#pragma once
/// \file
/// Unit Graphics: colours, pens, brushes, fonts, bitmaps and the canvas.
// The framework's graphics unit: colours, pens, brushes, fonts, canvas, bitmap.
#include "platform/vcl/graphics_bitmap.h"
#include "platform/vcl/graphics_brush.h"
#include "platform/vcl/graphics_canvas.h"
#include "platform/vcl/graphics_color.h"
#include "platform/vcl/graphics_font.h"
#include "platform/vcl/graphics_object.h"
#include "platform/vcl/graphics_pen.h"
