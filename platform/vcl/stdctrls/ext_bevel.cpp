#include "platform/vcl/stdctrls/ext_bevel.h"

namespace Extctrls {

VCL_COMPONENT_IMPL(TBevel, Controls::TGraphicControl, VCL_PROPERTY(Shape, bsBox), VCL_PROPERTY(Style, bsLowered))

TBevel::TBevel(Classes::TComponent* owner) : TGraphicControl(owner) { SetBounds(0, 0, 50, 50); }

void TBevel::SetShape(TBevelShape value) {
  if (value == shape_) return;
  shape_ = value;
  Invalidate();
}

void TBevel::SetStyle(TBevelStyle value) {
  if (value == style_) return;
  style_ = value;
  Invalidate();
}

// A box is one edge deep; a frame and the lines are two, etched when
// lowered and bumped when raised, as the system draws its group frames.
void TBevel::Paint(HDC dc) {
  static constexpr UINT kSides[] = {BF_RECT, BF_RECT, BF_TOP, BF_BOTTOM, BF_LEFT, BF_RIGHT, 0};
  if (shape_ == bsSpacer) return;
  RECT r{0, 0, GetWidth(), GetHeight()};
  const UINT edge = shape_ == bsBox ? (style_ == bsLowered ? BDR_SUNKENOUTER : BDR_RAISEDINNER)
                                    : (style_ == bsLowered ? EDGE_ETCHED : EDGE_BUMP);
  DrawEdge(dc, &r, edge, kSides[shape_]);
}

}  // namespace Extctrls
