#include "velkin/gdi/gdi_brush.h"

#include <windows.h>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/graphics/brush.h"

VCL_CLASS_IMPL(HCustomGDIBrush, HGDIObject)
VCL_CLASS_IMPL(HGDIBrush, HCustomGDIBrush)

HCustomGDIBrush::~HCustomGDIBrush() { ReleaseOnDestroy(); }

bool HCustomGDIBrush::Check(void* handle) { return GDICheckBrush(handle); }

void HCustomGDIBrush::SetColor(Graphics::TColor value) {
  Changing();
  color_ = value;
  Changed();
}

void HCustomGDIBrush::SetStyle(HFillStyle_Types value) {
  Changing();
  style_ = value;
  Changed();
}

void HCustomGDIBrush::SetPolygonStyle(HPolyFill_Types value) {
  Changing();
  polygonStyle_ = value;
  Changed();
}

void HCustomGDIBrush::Assign(Classes::TPersistent* source) {
  if (auto* brush = dynamic_cast<HCustomGDIBrush*>(source))
    Assign(brush);
  else if (auto* vclBrush = dynamic_cast<Graphics::TBrush*>(source))
    Assign(vclBrush);
  else
    HGDIObject::Assign(source);
}

void HCustomGDIBrush::Assign(HCustomGDIBrush* source) {
  if (!source) return;
  source->Refresh();
  Changing();
  color_ = source->color_;
  style_ = source->style_;
  polygonStyle_ = source->polygonStyle_;
  Dirtied();
}

void HCustomGDIBrush::Assign(Graphics::TBrush* source) {
  if (!source) return;
  Changing();
  color_ = source->GetColor();
  switch (source->GetStyle()) {
    case Graphics::bsClear:
      style_ = HFS_None;
      break;
    case Graphics::bsHorizontal:
      style_ = HFS_Horizontal;
      break;
    case Graphics::bsVertical:
      style_ = HFS_Vertical;
      break;
    case Graphics::bsFDiagonal:
      style_ = HFS_FDiagonal;
      break;
    case Graphics::bsBDiagonal:
      style_ = HFS_BDiagonal;
      break;
    case Graphics::bsCross:
      style_ = HFS_Cross;
      break;
    case Graphics::bsDiagCross:
      style_ = HFS_DiagCross;
      break;
    default:
      style_ = HFS_Solid;
      break;
  }
  Dirtied();
}

void* HCustomGDIBrush::DoCreateHandle() {
  const COLORREF color = static_cast<COLORREF>(Graphics::ColorToRGB(color_));
  if (style_ == HFS_Solid || style_ == HFS_Bitmap) return CreateSolidBrush(color);
  LOGBRUSH lb{BS_NULL, color, 0};
  if (style_ != HFS_None) {
    lb.lbStyle = BS_HATCHED;
    switch (style_) {
      case HFS_BDiagonal:
        lb.lbHatch = HS_BDIAGONAL;
        break;
      case HFS_DiagCross:
        lb.lbHatch = HS_DIAGCROSS;
        break;
      case HFS_FDiagonal:
        lb.lbHatch = HS_FDIAGONAL;
        break;
      case HFS_Horizontal:
        lb.lbHatch = HS_HORIZONTAL;
        break;
      case HFS_Vertical:
        lb.lbHatch = HS_VERTICAL;
        break;
      default:  // HFS_Cross and anything out of range
        lb.lbHatch = HS_CROSS;
        break;
    }
  }
  return CreateBrushIndirect(&lb);
}

void HCustomGDIBrush::DoDestroyHandle(void* handle) { OwnedGdiObject::Close(handle); }

void* HCustomGDIBrush::DoSelect(void* dc, void* handle) {
  SetPolyFillMode(static_cast<HDC>(dc), polygonStyle_ == HPF_Include ? WINDING : ALTERNATE);
  return SelectObject(static_cast<HDC>(dc), static_cast<HGDIOBJ>(handle));
}

// The fill mode set by DoSelect is left as it is.
void HCustomGDIBrush::DoRestore(void* dc, void* old) { SelectObject(static_cast<HDC>(dc), static_cast<HGDIOBJ>(old)); }
