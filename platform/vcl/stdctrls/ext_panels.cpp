#include "platform/vcl/stdctrls/ext_panels.h"

#include "platform/ostrel/dc_changer.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/typinfo.h"
#include "platform/vcl/graphics/measuring_dc.h"

namespace Extctrls {

VCL_COMPONENT_IMPL(TCustomPanel, Controls::TWinControl, VCL_PROPERTY_AS(Caption, Text),
                   VCL_PROPERTY(BevelOuter, bvRaised), VCL_PROPERTY(BevelInner, bvNone))
VCL_COMPONENT_IMPL(TPanel, TCustomPanel)

TCustomPanel::TCustomPanel(Classes::TComponent* owner) : TWinControl(owner) { SetBounds(0, 0, 185, 41); }

void TCustomPanel::SetBevelOuter(TBevelCut value) {
  bevelOuter_ = value;
  Invalidate();
}

void TCustomPanel::SetBevelInner(TBevelCut value) {
  bevelInner_ = value;
  Invalidate();
}

void TCustomPanel::Paint(HDC dc) {
  RECT r;
  ::GetClientRect(GetHandle(), &r);
  FillRect(dc, &r, BackgroundBrush());
  for (TBevelCut cut : {bevelOuter_, bevelInner_}) {
    if (cut == bvNone) continue;
    if (cut != bvSpace) DrawEdge(dc, &r, cut == bvRaised ? BDR_RAISEDINNER : BDR_SUNKENOUTER, BF_RECT);
    InflateRect(&r, -1, -1);
  }
  const AnsiString text = GetText();
  if (text.IsEmpty()) return;
  DCChanger state(dc);
  state.Select(FontHandle());
  state.SetBkMode(TRANSPARENT);
  state.SetTextColor(static_cast<COLORREF>(Graphics::ColorToRGB(GetFont()->GetColor())));
  const std::wstring drawn = Graphics::DrawnText(dc, text.c_str(), text.Length());
  DrawTextW(dc, drawn.c_str(), static_cast<int>(drawn.size()), &r, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
}

void TCustomPanel::WndProc(Controls::TMessage& message) {
  switch (message.Msg) {
    case WM_PAINT: {
      const OwnedPaintDC dc(GetHandle());
      Paint(dc.get());
      PaintControls(dc.get(), dc.area());
      return;
    }
    case WM_ERASEBKGND:
      message.Result = 1;  // Paint fills it all
      return;
    case WM_SETTEXT:
      TWinControl::WndProc(message);
      Invalidate();
      return;
    default:
      TWinControl::WndProc(message);
  }
}

}  // namespace Extctrls
