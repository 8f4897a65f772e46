#pragma once
/// \file
/// Brushes whose handle is made on demand.
#include <windows.h>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/typinfo.h"
#include "platform/vcl/graphics/color.h"
#include "platform/vcl/graphics/object.h"

namespace Graphics {

/// How a brush fills: solid, hatched or not at all.
enum TBrushStyle { bsSolid, bsClear, bsHorizontal, bsVertical, bsFDiagonal, bsBDiagonal, bsCross, bsDiagCross };
VCL_ENUM_INFO(TBrushStyle, bsSolid, bsClear, bsHorizontal, bsVertical, bsFDiagonal, bsBDiagonal, bsCross, bsDiagCross)

/// A brush whose GDI handle is made on demand from colour and style.
class VCL_API TBrush : public TGraphicsObject {
  VCL_CLASS();

 public:
  TBrush() = default;
  ~TBrush() override;
  TBrush(const TBrush&) = delete;
  TBrush& operator=(const TBrush&) = delete;

  TColor GetColor() const { return color_; }
  void SetColor(TColor value);
  TBrushStyle GetStyle() const { return style_; }
  void SetStyle(TBrushStyle value);

  /// The brush's handle, created when first asked for; owned by the brush.
  HBRUSH GetHandle();
  bool HandleAllocated() const { return static_cast<bool>(handle_); }

  void Assign(Classes::TPersistent* source) override;

 protected:
  void Changed() override;

 private:
  TColor color_ = clWhite;
  TBrushStyle style_ = bsSolid;
  OwnedBrush handle_;
};

}  // namespace Graphics
