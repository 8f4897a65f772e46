#pragma once
/// \file
/// Unit ExtCtrls, bevels: sunk or raised boxes, frames and lines.
#include "platform/vcl/controls/controls.h"
#include "platform/vcl/core/typinfo.h"

namespace Extctrls {

/// What a bevel draws: a box, a frame, one edge line, or nothing.
enum TBevelShape { bsBox, bsFrame, bsTopLine, bsBottomLine, bsLeftLine, bsRightLine, bsSpacer };
VCL_ENUM_INFO(TBevelShape, bsBox, bsFrame, bsTopLine, bsBottomLine, bsLeftLine, bsRightLine, bsSpacer)
/// Whether a bevel looks sunk or raised.
enum TBevelStyle { bsLowered, bsRaised };
VCL_ENUM_INFO(TBevelStyle, bsLowered, bsRaised)

/// A bevel: a windowless control that draws a 3-D box, frame or line in the
/// system's shadow and highlight colours, to group or separate controls.
class VCL_API TBevel : public Controls::TGraphicControl {
  VCL_CLASS();

 public:
  explicit TBevel(Classes::TComponent* owner);
  TBevelShape GetShape() const { return shape_; }
  void SetShape(TBevelShape value);
  TBevelStyle GetStyle() const { return style_; }
  void SetStyle(TBevelStyle value);
  void Paint(HDC dc) override;

 private:
  TBevelShape shape_ = bsBox;
  TBevelStyle style_ = bsLowered;
};

}  // namespace Extctrls
