#pragma once
/// \file
/// Pens whose handle is made on demand.
#include <windows.h>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/typinfo.h"
#include "platform/vcl/graphics/color.h"
#include "platform/vcl/graphics/object.h"

namespace Graphics {

/// Solid, dashed, dotted or no line.
enum TPenStyle { psSolid, psDash, psDot, psDashDot, psDashDotDot, psClear, psInsideFrame };
VCL_ENUM_INFO(TPenStyle, psSolid, psDash, psDot, psDashDot, psDashDotDot, psClear, psInsideFrame)

/// Raster operations in the framework's order (pmCopy draws the pen colour).
enum TPenMode {
  pmBlack,
  pmWhite,
  pmNop,
  pmNot,
  pmCopy,
  pmNotCopy,
  pmMergePenNot,
  pmMaskPenNot,
  pmMergeNotPen,
  pmMaskNotPen,
  pmMerge,
  pmNotMerge,
  pmMask,
  pmNotMask,
  pmXor,
  pmNotXor
};
VCL_ENUM_INFO(TPenMode, pmBlack, pmWhite, pmNop, pmNot, pmCopy, pmNotCopy, pmMergePenNot, pmMaskPenNot, pmMergeNotPen,
              pmMaskNotPen, pmMerge, pmNotMerge, pmMask, pmNotMask, pmXor, pmNotXor)

/// A pen whose GDI handle is made on demand from its properties and dropped
/// after every change.
class VCL_API TPen : public TGraphicsObject {
  VCL_CLASS();

 public:
  TPen() = default;
  ~TPen() override;
  TPen(const TPen&) = delete;
  TPen& operator=(const TPen&) = delete;

  TColor GetColor() const { return color_; }
  void SetColor(TColor value);
  int GetWidth() const { return width_; }
  /// Widths below 1 are stored as 1.
  void SetWidth(int value);
  TPenStyle GetStyle() const { return style_; }
  void SetStyle(TPenStyle value);
  TPenMode GetMode() const { return mode_; }
  void SetMode(TPenMode value);

  /// The pen's handle, created when first asked for; owned by the pen.
  HPEN GetHandle();
  bool HandleAllocated() const { return static_cast<bool>(handle_); }

  /// Copies colour, width, style and mode from another TPen.
  void Assign(Classes::TPersistent* source) override;

 protected:
  void Changed() override;

 private:
  TColor color_ = clBlack;
  int width_ = 1;
  TPenStyle style_ = psSolid;
  TPenMode mode_ = pmCopy;
  OwnedPen handle_;
};

}  // namespace Graphics
