#pragma once
/// \file
/// Unit Graphics: colours, pens, brushes, fonts, bitmaps and the canvas.
// The framework's graphics unit: colours, pens, brushes, fonts, canvas, bitmap.
#include "platform/vcl/graphics/bitmap.h"
#include "platform/vcl/graphics/brush.h"
#include "platform/vcl/graphics/canvas.h"
#include "platform/vcl/graphics/color.h"
#include "platform/vcl/graphics/font.h"
#include "platform/vcl/graphics/object.h"
#include "platform/vcl/graphics/pen.h"
