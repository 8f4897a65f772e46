#include "platform/vcl/stdctrls/std_group_box.h"

#include "platform/ostrel/dc_changer.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/typinfo.h"
#include "platform/vcl/graphics/measuring_dc.h"

namespace Stdctrls {

VCL_COMPONENT_IMPL(TCustomGroupBox, Controls::TWinControl, VCL_PROPERTY_AS(Caption, Text))
VCL_COMPONENT_IMPL(TGroupBox, TCustomGroupBox)

TCustomGroupBox::TCustomGroupBox(Classes::TComponent* owner) : TWinControl(owner) { SetBounds(0, 0, 185, 105); }

void TCustomGroupBox::CreateParams(Controls::TCreateParams& params) {
  TWinControl::CreateParams(params);
  params.SystemClass = "BUTTON";
  params.Style |= BS_GROUPBOX | WS_CLIPCHILDREN;
}

// Inside the frame, below the caption: the height of the font's text.
MyRect TCustomGroupBox::GetClientRect() const {
  MyRect r = TWinControl::GetClientRect();
  TEXTMETRICA tm{};
  {
    const Graphics::TMeasuringDC measuring;
    measuring.UseFont(FontHandle());
    GetTextMetricsA(measuring.get(), &tm);
  }
  return {r.left + 2, r.top + tm.tmHeight, r.right - 2, r.bottom - 2};
}

void TCustomGroupBox::WndProc(Controls::TMessage& message) {
  switch (message.Msg) {
    case WM_NCHITTEST:
      // The system's group frame lets the mouse through to what lies below;
      // this one holds controls that take it.
      message.Result = HTCLIENT;
      return;
    case WM_ERASEBKGND: {
      RECT r;
      ::GetClientRect(GetHandle(), &r);
      FillRect(reinterpret_cast<HDC>(message.WParam), &r, BackgroundBrush());
      message.Result = 1;
      return;
    }
    case WM_SETTEXT:
      TWinControl::WndProc(message);
      Invalidate();
      return;
    default:
      TWinControl::WndProc(message);
  }
}

}  // namespace Stdctrls
