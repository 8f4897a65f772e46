#include "platform/vcl/stdctrls/buttons.h"

#include "platform/ostrel/dc_changer.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/typinfo.h"
#include "platform/vcl/graphics/measuring_dc.h"

namespace Buttons {

using Controls::TMessage;

VCL_COMPONENT_IMPL(TSpeedButton, Controls::TGraphicControl, VCL_PROPERTY_AS(Caption, Text), VCL_PROPERTY(Glyph),
                   VCL_PROPERTY(GroupIndex, 0), VCL_PROPERTY(Down, false), VCL_PROPERTY(AllowAllUp, false),
                   VCL_PROPERTY(Flat, false))
VCL_COMPONENT_IMPL(TBitBtn, Stdctrls::TButton, VCL_PROPERTY(Glyph))

// The glyph, then a gap, then the caption, the whole centred.
void DrawButtonFace(HDC dc, RECT r, Graphics::TBitmap* glyph, const AnsiString& caption, HFONT font, bool enabled) {
  DCChanger state(dc);
  state.Select(font);
  state.SetBkMode(TRANSPARENT);
  state.SetTextColor(GetSysColor(enabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
  RECT text{0, 0, 0, 0};
  const std::wstring drawn = Graphics::DrawnText(dc, caption.c_str(), caption.Length());
  if (!caption.IsEmpty())
    DrawTextW(dc, drawn.c_str(), static_cast<int>(drawn.size()), &text, DT_SINGLELINE | DT_CALCRECT);
  const bool hasGlyph = glyph && !glyph->GetEmpty();
  const int gw = hasGlyph ? glyph->GetWidth() : 0, gh = hasGlyph ? glyph->GetHeight() : 0;
  const int gap = hasGlyph && !caption.IsEmpty() ? 4 : 0;
  int x = (r.left + r.right - (gw + gap + text.right)) / 2;
  if (hasGlyph) {
    const OwnedMemoryDC source(CreateCompatibleDC(dc));
    DCChanger selected(source.get());
    selected.Select(glyph->GetHandle());
    const COLORREF transparent = GetPixel(source.get(), 0, gh - 1);
    GdiTransparentBlt(dc, x, (r.top + r.bottom - gh) / 2, gw, gh, source.get(), 0, 0, gw, gh, transparent);
    x += gw + gap;
  }
  if (caption.IsEmpty()) return;
  RECT place{x, r.top, x + text.right, r.bottom};
  DrawTextW(dc, drawn.c_str(), static_cast<int>(drawn.size()), &place, DT_SINGLELINE | DT_VCENTER);
}

// ---- TSpeedButton ----

TSpeedButton::TSpeedButton(Classes::TComponent* owner)
    : TGraphicControl(owner), glyph_(std::make_unique<Graphics::TBitmap>()) {
  SetBounds(0, 0, 23, 22);
  glyph_->SetOnChange({this, &TSpeedButton::GlyphChanged});
}

TSpeedButton::~TSpeedButton() = default;

void TSpeedButton::SetGlyph(Graphics::TBitmap* value) { glyph_->Assign(value); }

// Going down lets the others of the group up; going up needs AllowAllUp
// unless the button leaves its group.
void TSpeedButton::SetDown(bool value) {
  if (groupIndex_ == 0) value = false;
  if (value == down_) return;
  if (!value && !allowAllUp_) return;
  down_ = value;
  if (value && GetParent())
    for (int i = 0; i < GetParent()->GetControlCount(); ++i)
      if (auto* other = dynamic_cast<TSpeedButton*>(GetParent()->GetControl(i));
          other && other != this && other->groupIndex_ == groupIndex_ && other->down_) {
        other->down_ = false;
        other->Invalidate();
      }
  Invalidate();
}

void TSpeedButton::SetGroupIndex(int value) {
  groupIndex_ = value;
  if (value == 0 && down_) {
    down_ = false;
    Invalidate();
  }
}

void TSpeedButton::SetFlat(bool value) {
  flat_ = value;
  Invalidate();
}

void TSpeedButton::SetPressed(bool value) {
  if (value == pressed_) return;
  pressed_ = value;
  Invalidate();
}

void TSpeedButton::MouseDown(Controls::TMouseButton button, Controls::TShiftState shift, int x, int y) {
  if (button == Controls::mbLeft && GetEnabled()) {
    tracking_ = true;
    SetPressed(true);
  }
  TGraphicControl::MouseDown(button, shift, x, y);
}

void TSpeedButton::MouseMove(Controls::TShiftState shift, int x, int y) {
  if (tracking_) SetPressed(x >= 0 && y >= 0 && x < GetWidth() && y < GetHeight());
  TGraphicControl::MouseMove(shift, x, y);
}

void TSpeedButton::MouseUp(Controls::TMouseButton button, Controls::TShiftState shift, int x, int y) {
  if (button == Controls::mbLeft) {
    tracking_ = false;
    SetPressed(false);
  }
  TGraphicControl::MouseUp(button, shift, x, y);
}

void TSpeedButton::Click() {
  if (groupIndex_ != 0) SetDown(!down_);
  TGraphicControl::Click();
}

void TSpeedButton::Paint(HDC dc) {
  RECT r{0, 0, GetWidth(), GetHeight()};
  const bool in = pressed_ || down_;
  if (!flat_)
    DrawFrameControl(dc, &r, DFC_BUTTON, DFCS_BUTTONPUSH | (in ? DFCS_PUSHED : 0));
  else if (in)
    DrawEdge(dc, &r, BDR_SUNKENOUTER, BF_RECT);
  if (in) OffsetRect(&r, 1, 1);
  DrawButtonFace(dc, r, glyph_.get(), GetText(), FontHandle(), GetEnabled());
}

// ---- TBitBtn ----

TBitBtn::TBitBtn(Classes::TComponent* owner) : TButton(owner), glyph_(std::make_unique<Graphics::TBitmap>()) {
  glyph_->SetOnChange({this, &TBitBtn::GlyphChanged});
}

TBitBtn::~TBitBtn() = default;

void TBitBtn::SetGlyph(Graphics::TBitmap* value) { glyph_->Assign(value); }

// The face the system would draw for a push button, with the glyph on it:
// the default button has a dark outer border, the focused one a dotted
// rectangle inside.
void TBitBtn::Notified(TMessage& message) {
  if (message.Msg != Controls::CN_DRAWITEM) {
    TButton::Notified(message);
    return;
  }
  auto* item = reinterpret_cast<const DRAWITEMSTRUCT*>(message.LParam);
  RECT r = item->rcItem;
  const bool pushed = item->itemState & ODS_SELECTED;
  if (GetDefault() || (item->itemState & ODS_FOCUS)) {
    FrameRect(item->hDC, &r, GetSysColorBrush(COLOR_WINDOWFRAME));
    InflateRect(&r, -1, -1);
  }
  DrawFrameControl(item->hDC, &r, DFC_BUTTON, DFCS_BUTTONPUSH | (pushed ? DFCS_PUSHED | DFCS_FLAT : 0));
  RECT face = r;
  if (pushed) OffsetRect(&face, 1, 1);
  DrawButtonFace(item->hDC, face, glyph_.get(), GetText(), FontHandle(), !(item->itemState & ODS_DISABLED));
  if (item->itemState & ODS_FOCUS) {
    InflateRect(&r, -3, -3);
    DrawFocusRect(item->hDC, &r);
  }
  message.Result = TRUE;
}

}  // namespace Buttons
