#include "platform/vcl/graphics/canvas.h"

#include "platform/vcl/graphics/bitmap.h"
#include "platform/vcl/graphics/measuring_dc.h"

namespace Graphics {

VCL_CLASS_IMPL(TCanvas, Classes::TPersistent)

namespace {
const TCanvasState kAllValid{csHandleValid, csPenValid, csBrushValid, csFontValid};
const TCanvasState kPenBrush{csHandleValid, csPenValid, csBrushValid};

// Raster operation of each TPenMode, in enumeration order.
const int kRop2[] = {R2_BLACK,       R2_WHITE,      R2_NOP,         R2_NOT,        R2_COPYPEN,  R2_NOTCOPYPEN,
                     R2_MERGEPENNOT, R2_MASKPENNOT, R2_MERGENOTPEN, R2_MASKNOTPEN, R2_MERGEPEN, R2_NOTMERGEPEN,
                     R2_MASKPEN,     R2_NOTMASKPEN, R2_XORPEN,      R2_NOTXORPEN};
}  // namespace

TCanvas::TCanvas() : pen_(new TPen), brush_(new TBrush), font_(new TFont) {
  pen_->SetOnChange(System::TNotifyEvent(this, &TCanvas::PenChanged));
  brush_->SetOnChange(System::TNotifyEvent(this, &TCanvas::BrushChanged));
  font_->SetOnChange(System::TNotifyEvent(this, &TCanvas::FontChanged));
}

TCanvas::~TCanvas() {
  SetHandle(nullptr);
  delete font_;
  delete brush_;
  delete pen_;
}

HDC TCanvas::GetHandle() {
  RequiredState(kAllValid);
  return handle_;
}

void TCanvas::SetHandle(HDC dc) {
  if (dc == handle_) return;
  if (handle_) DeselectHandles();
  selection_.reset();
  handle_ = dc;
  state_.Clear();
  if (dc) {
    selection_.emplace(dc);
    state_ << csHandleValid;
  }
}

void TCanvas::RequiredState(const TCanvasState& state) {
  if (!handle_ && state.Contains(csHandleValid)) {
    CreateHandle();
    if (!handle_) return;
  }
  if (!handle_) return;
  if (state.Contains(csPenValid) && !state_.Contains(csPenValid)) SelectPen();
  if (state.Contains(csBrushValid) && !state_.Contains(csBrushValid)) SelectBrush();
  if (state.Contains(csFontValid) && !state_.Contains(csFontValid)) SelectFont();
}

void TCanvas::SelectPen() {
  selection_->Select(pen_->GetHandle());
  // Mode and colours below are the canvas's own settings of its context, made
  // anew with each selection and not given back (as the framework's canvas does).
  const int mode = pen_->GetMode();
  SetROP2(handle_, mode >= pmBlack && mode <= pmNotXor ? kRop2[mode] : R2_COPYPEN);
  state_ << csPenValid;
}

void TCanvas::SelectBrush() {
  UnrealizeObject(brush_->GetHandle());
  selection_->Select(brush_->GetHandle());
  const COLORREF color = static_cast<COLORREF>(ColorToRGB(brush_->GetColor()));
  if (brush_->GetStyle() == bsSolid) {
    SetBkColor(handle_, color);
    SetBkMode(handle_, OPAQUE);
  } else {
    // Hatches vanish where the background colour equals the brush colour.
    SetBkColor(handle_, ~color & 0xFFFFFF);
    SetBkMode(handle_, TRANSPARENT);
  }
  state_ << csBrushValid;
}

void TCanvas::SelectFont() {
  selection_->Select(font_->GetHandle());
  SetTextColor(handle_, static_cast<COLORREF>(ColorToRGB(font_->GetColor())));
  state_ << csFontValid;
}

void TCanvas::DeselectHandles() {
  if (!handle_) return;
  selection_->Restore();
  state_ >> csPenValid >> csBrushValid >> csFontValid;
}

void TCanvas::PenChanged(System::TObject*) {
  if (!state_.Contains(csPenValid)) return;
  selection_->RestorePen();
  state_ >> csPenValid;
}

void TCanvas::BrushChanged(System::TObject*) {
  if (!state_.Contains(csBrushValid)) return;
  selection_->RestoreBrush();
  state_ >> csBrushValid;
}

void TCanvas::FontChanged(System::TObject*) {
  if (!state_.Contains(csFontValid)) return;
  selection_->RestoreFont();
  state_ >> csFontValid;
}

void TCanvas::Changing() {
  if (onChanging_) onChanging_(this);
}

void TCanvas::Changed() {
  if (onChange_) onChange_(this);
}

MyPoint TCanvas::GetPenPos() {
  RequiredState({csHandleValid});
  POINT p{};
  if (handle_) GetCurrentPositionEx(handle_, &p);
  return MyPoint{p.x, p.y};
}

void TCanvas::SetPenPos(const MyPoint& value) { MoveTo(value.x, value.y); }

MyRect TCanvas::GetClipRect() {
  RequiredState({csHandleValid});
  RECT r{};
  if (handle_) GetClipBox(handle_, &r);
  return MyRect{r.left, r.top, r.right, r.bottom};
}

TColor TCanvas::GetPixels(int x, int y) {
  RequiredState({csHandleValid});
  return handle_ ? TColor(static_cast<int>(GetPixel(handle_, x, y))) : clNone;
}

void TCanvas::SetPixels(int x, int y, TColor color) {
  Changing();
  RequiredState({csHandleValid, csPenValid});
  if (handle_) SetPixel(handle_, x, y, static_cast<COLORREF>(ColorToRGB(color)));
  Changed();
}

void TCanvas::MoveTo(int x, int y) {
  RequiredState({csHandleValid});
  if (handle_) MoveToEx(handle_, x, y, nullptr);
}

void TCanvas::LineTo(int x, int y) {
  Changing();
  RequiredState(kPenBrush);
  if (handle_) ::LineTo(handle_, x, y);
  Changed();
}

void TCanvas::FillRect(const MyRect& r) {
  Changing();
  RequiredState({csHandleValid, csBrushValid});
  if (handle_) ::FillRect(handle_, reinterpret_cast<const RECT*>(&r), brush_->GetHandle());
  Changed();
}

void TCanvas::FrameRect(const MyRect& r) {
  Changing();
  RequiredState({csHandleValid, csBrushValid});
  if (handle_) ::FrameRect(handle_, reinterpret_cast<const RECT*>(&r), brush_->GetHandle());
  Changed();
}

void TCanvas::Rectangle(int x1, int y1, int x2, int y2) {
  Changing();
  RequiredState(kPenBrush);
  if (handle_) ::Rectangle(handle_, x1, y1, x2, y2);
  Changed();
}

void TCanvas::Ellipse(int x1, int y1, int x2, int y2) {
  Changing();
  RequiredState(kPenBrush);
  if (handle_) ::Ellipse(handle_, x1, y1, x2, y2);
  Changed();
}

void TCanvas::RoundRect(int x1, int y1, int x2, int y2, int x3, int y3) {
  Changing();
  RequiredState(kPenBrush);
  if (handle_) ::RoundRect(handle_, x1, y1, x2, y2, x3, y3);
  Changed();
}

void TCanvas::Polygon(const MyPoint* points, int count) {
  if (!points || count < 2) return;
  Changing();
  RequiredState(kPenBrush);
  if (handle_) ::Polygon(handle_, reinterpret_cast<const POINT*>(points), count);
  Changed();
}

void TCanvas::Polyline(const MyPoint* points, int count) {
  if (!points || count < 2) return;
  Changing();
  RequiredState(kPenBrush);
  if (handle_) ::Polyline(handle_, reinterpret_cast<const POINT*>(points), count);
  Changed();
}

void TCanvas::TextOut(int x, int y, const System::AnsiString& text) {
  Changing();
  RequiredState({csHandleValid, csFontValid, csBrushValid});
  if (handle_) {
    const std::wstring drawn = DrawnText(handle_, text.c_str(), text.Length());
    ::TextOutW(handle_, x, y, drawn.c_str(), static_cast<int>(drawn.size()));
    SIZE s{};
    GetTextExtentPoint32W(handle_, drawn.c_str(), static_cast<int>(drawn.size()), &s);
    MoveToEx(handle_, x + s.cx, y, nullptr);
  }
  Changed();
}

void TCanvas::TextRect(const MyRect& r, int x, int y, const System::AnsiString& text) {
  Changing();
  RequiredState({csHandleValid, csFontValid, csBrushValid});
  if (handle_) {
    UINT options = ETO_CLIPPED;
    if (brush_->GetStyle() != bsClear) options |= ETO_OPAQUE;
    const std::wstring drawn = DrawnText(handle_, text.c_str(), text.Length());
    ExtTextOutW(handle_, x, y, options, reinterpret_cast<const RECT*>(&r), drawn.c_str(),
                static_cast<UINT>(drawn.size()), nullptr);
  }
  Changed();
}

MyPoint TCanvas::TextExtent(const System::AnsiString& text) {
  RequiredState({csHandleValid, csFontValid});
  SIZE s{};
  if (handle_) {
    const std::wstring drawn = DrawnText(handle_, text.c_str(), text.Length());
    GetTextExtentPoint32W(handle_, drawn.c_str(), static_cast<int>(drawn.size()), &s);
  }
  return MyPoint{s.cx, s.cy};
}

void TCanvas::Draw(int x, int y, TBitmap* bitmap) {
  if (!bitmap || bitmap->GetEmpty()) return;
  Changing();
  RequiredState({csHandleValid});
  HDC source = bitmap->GetCanvas()->GetHandle();
  if (handle_ && source) BitBlt(handle_, x, y, bitmap->GetWidth(), bitmap->GetHeight(), source, 0, 0, SRCCOPY);
  Changed();
}

void TCanvas::CopyRect(const MyRect& dest, TCanvas* source, const MyRect& sourceRect) {
  if (!source) return;
  Changing();
  RequiredState({csHandleValid, csBrushValid});
  HDC from = source->GetHandle();
  if (handle_ && from)
    StretchBlt(handle_, dest.left, dest.top, dest.Width(), dest.Height(), from, sourceRect.left, sourceRect.top,
               sourceRect.Width(), sourceRect.Height(), SRCCOPY);
  Changed();
}

}  // namespace Graphics
