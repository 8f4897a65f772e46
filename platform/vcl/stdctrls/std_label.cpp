#include "platform/vcl/stdctrls/std_label.h"

#include <algorithm>
#include <string>

#include "platform/ostrel/dc_changer.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/typinfo.h"
#include "platform/vcl/graphics/measuring_dc.h"

namespace Stdctrls {

VCL_COMPONENT_IMPL(TCustomLabel, Controls::TGraphicControl, VCL_PROPERTY_AS(Caption, Text),
                   VCL_PROPERTY(Alignment, taLeftJustify), VCL_PROPERTY(Layout, tlTop),
                   VCL_PROPERTY(Transparent, false), VCL_PROPERTY(AutoSize, true), VCL_PROPERTY(WordWrap, false),
                   VCL_PROPERTY(FocusControl))
VCL_COMPONENT_IMPL(TLabel, TCustomLabel)

TCustomLabel::TCustomLabel(Classes::TComponent* owner) : TGraphicControl(owner) { SetBounds(0, 0, 65, 17); }

UINT TCustomLabel::DrawFlags() const {
  static constexpr UINT kAcross[] = {DT_LEFT, DT_RIGHT, DT_CENTER};
  UINT flags = kAcross[alignment_] | (wordWrap_ ? DT_WORDBREAK : DT_SINGLELINE);
  if (!wordWrap_) flags |= layout_ == tlCenter ? DT_VCENTER : layout_ == tlBottom ? DT_BOTTOM : DT_TOP;
  return flags;
}

void TCustomLabel::Paint(HDC dc) {
  RECT r{0, 0, GetWidth(), GetHeight()};
  if (!transparent_) {
    const OwnedBrush background(CreateSolidBrush(static_cast<COLORREF>(Graphics::ColorToRGB(GetColor()))));
    FillRect(dc, &r, background.get());
  }
  const AnsiString text = GetText();
  DCChanger state(dc);
  state.Select(FontHandle());
  state.SetBkMode(TRANSPARENT);
  state.SetTextColor(GetEnabled() ? static_cast<COLORREF>(Graphics::ColorToRGB(GetFont()->GetColor()))
                                  : GetSysColor(COLOR_GRAYTEXT));
  // Laid out in the room it was measured in (the same line breaks, the same
  // place for a right or centred text); the margin holds the ink that a
  // renderer draws past the measured end, which the rectangle would cut.
  r.right -= margin_;
  const std::wstring wide = Graphics::WideText(text.c_str(), text.Length());
  DrawTextW(dc, wide.c_str(), static_cast<int>(wide.size()), &r, DrawFlags() | (margin_ ? DT_NOCLIP : 0));
}

void TCustomLabel::AdjustSize() {
  if (!autoSize_) margin_ = 0;
  if (!autoSize_ || GetComponentState().Contains(Classes::csLoading)) return;
  const AnsiString text = GetText();
  const std::wstring shown = text.IsEmpty() ? L" " : Graphics::WideText(text.c_str(), text.Length());
  const int length = static_cast<int>(shown.size());
  const UINT flags = DrawFlags() & ~(DT_VCENTER | DT_BOTTOM);
  RECT r;
  int ink = 0;
  {
    const Graphics::TMeasuringDC measuring;
    measuring.UseFont(FontHandle());
    r = measuring.TextRect(shown.c_str(), length, flags, wordWrap_ ? GetWidth() : 0);
    ink = measuring.InkRight(shown.c_str(), length, r, flags);
  }
  // Wide enough for the ink as drawn, with a clear column at the edge.
  margin_ = std::max(0, ink + 1 - static_cast<int>(r.right - r.left));
  SetBounds(GetLeft(), GetTop(), r.right - r.left + margin_, r.bottom - r.top);
}

void TCustomLabel::Loaded() {
  TGraphicControl::Loaded();
  AdjustSize();
}

void TCustomLabel::SetText(const AnsiString& value) {
  TGraphicControl::SetText(value);
  AdjustSize();
}

void TCustomLabel::SetAlignment(TAlignment value) {
  alignment_ = value;
  Invalidate();
}

void TCustomLabel::SetLayout(TTextLayout value) {
  layout_ = value;
  Invalidate();
}

void TCustomLabel::SetTransparent(bool value) {
  transparent_ = value;
  Invalidate();
}

void TCustomLabel::SetAutoSize(bool value) {
  autoSize_ = value;
  AdjustSize();
}

void TCustomLabel::SetWordWrap(bool value) {
  wordWrap_ = value;
  AdjustSize();
  Invalidate();
}

void TCustomLabel::WndProc(Controls::TMessage& message) {
  if (message.Msg == Controls::CM_DIALOGCHAR) {
    if (focusControl_ && focusControl_->CanFocus() &&
        Controls::IsAccel(static_cast<unsigned>(message.WParam), GetText())) {
      focusControl_->SetFocus();
      message.Result = 1;
    }
    return;
  }
  if (message.Msg == Controls::CM_FONTCHANGED) AdjustSize();
  TGraphicControl::WndProc(message);
}

void TCustomLabel::SetFocusControl(Controls::TWinControl* value) {
  focusControl_ = value;
  if (value) value->FreeNotification(this);
}

void TCustomLabel::Notification(Classes::TComponent* component, Classes::TOperation operation) {
  TGraphicControl::Notification(component, operation);
  if (operation == Classes::opRemove && component == focusControl_) focusControl_ = nullptr;
}

}  // namespace Stdctrls
