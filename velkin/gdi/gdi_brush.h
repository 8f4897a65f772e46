#pragma once
/// \file
/// Brushes behind a lazy handle.
#include "platform/vcl/graphics/color.h"
#include "velkin/gdi/gdi_object.h"

namespace Graphics {
class TBrush;
}

/// How a brush fills: solid, hatched or not at all.
enum HFillStyle_Types : unsigned char {
  HFS_Solid = 0,
  HFS_Bitmap = 1,  // drawn as solid by the brush itself
  HFS_BDiagonal = 2,
  HFS_Cross = 3,
  HFS_DiagCross = 4,
  HFS_FDiagonal = 5,
  HFS_Horizontal = 6,
  HFS_Vertical = 7,
  HFS_None = 8
};

/// Polygon fill mode a brush sets when selected.
enum HPolyFill_Types : unsigned char { HPF_Exclude = 0, HPF_Include = 1 };

/// A solid, hatched or null brush. Selecting it also sets the context's polygon
/// fill mode (WINDING for HPF_Include, else ALTERNATE), which restoring keeps.
class VELKIN_API HCustomGDIBrush : public HGDIObject {
  VCL_CLASS();

 public:
  HCustomGDIBrush() = default;
  ~HCustomGDIBrush() override;

  /// These three setters raise Changed() and always notify.
  Graphics::TColor GetColor() const { return color_; }
  void SetColor(Graphics::TColor value);
  HFillStyle_Types GetStyle() const { return style_; }
  void SetStyle(HFillStyle_Types value);
  HPolyFill_Types GetPolygonStyle() const { return polygonStyle_; }
  void SetPolygonStyle(HPolyFill_Types value);

  /// Dispatches: a GDI brush, then a framework TBrush, else the conversion error.
  void Assign(Classes::TPersistent* source) override;
  /// Colour, style and polygon style; the source is refreshed first. Null: nothing.
  void Assign(HCustomGDIBrush* source);
  /// Colour and the mapped style (bsClear becomes HFS_None). Null: nothing.
  /// One change for the whole copy, ended by Dirtied(), as the wrapper copy does:
  /// a nested SetStyle would leave a LockOnChange brush locked for ever.
  void Assign(Graphics::TBrush* source);

  HGDI_OBJECT_SLOTS();

 private:
  Graphics::TColor color_ = Graphics::clWhite;
  HFillStyle_Types style_ = HFS_Solid;
  HPolyFill_Types polygonStyle_ = HPF_Exclude;
};

/// The brush wrapper to make instances of.
class VELKIN_API HGDIBrush : public HCustomGDIBrush {
  VCL_CLASS();

 public:
  HGDIBrush() = default;
};
