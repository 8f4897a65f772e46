#include "platform/vcl/controls/custom_control.h"

#include "platform/vcl/core/typinfo.h"

namespace Controls {

VCL_CLASS_IMPL(TGraphicControl, TControl)
VCL_COMPONENT_IMPL(TCustomControl, TWinControl)

// ---- TGraphicControl ----

TGraphicControl::TGraphicControl(Classes::TComponent* owner) : TControl(owner) {}

void TGraphicControl::SetText(const AnsiString& value) {
  if (value == GetText()) return;
  TControl::SetText(value);
  Invalidate();
}

// ---- TCustomControl ----

TCustomControl::TCustomControl(Classes::TComponent* owner)
    : TWinControl(owner), canvas_(std::make_unique<Graphics::TCanvas>()) {}

TCustomControl::~TCustomControl() = default;

void TCustomControl::Paint() {
  const MyRect r = GetClientRect();
  canvas_->FillRect(r);
}

void TCustomControl::WndProc(TMessage& message) {
  switch (message.Msg) {
    case WM_ERASEBKGND:
      message.Result = 1;  // Paint covers it all
      return;
    case WM_PAINT:
      PaintOnCanvas(message, *canvas_, {this, &TCustomControl::Paint});
      return;
    default:
      TWinControl::WndProc(message);
  }
}

}  // namespace Controls
