#include "platform/vcl/controls/control.h"

#include <algorithm>

#include "platform/ostrel/mbchar.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/controls/win_control.h"
#include "platform/vcl/core/typinfo.h"
#include "platform/vcl/graphics/measuring_dc.h"

namespace Controls {

VCL_CLASS_IMPL(TSizeConstraints, Classes::TPersistent, VCL_PROPERTY(MinWidth, 0), VCL_PROPERTY(MinHeight, 0),
               VCL_PROPERTY(MaxWidth, 0), VCL_PROPERTY(MaxHeight, 0))
VCL_COMPONENT_IMPL(TControl, Classes::TComponent, VCL_PROPERTY(Left), VCL_PROPERTY(Top), VCL_PROPERTY(Width),
                   VCL_PROPERTY(Height), VCL_PROPERTY(Align, alNone), VCL_PROPERTY(Anchors, (TAnchors{akLeft, akTop})),
                   VCL_PROPERTY_READONLY(Constraints), VCL_PROPERTY(Visible, true), VCL_PROPERTY(Enabled, true),
                   VCL_PROPERTY(Hint), VCL_PROPERTY_STORED(ShowHint, IsShowHintStored),
                   VCL_PROPERTY(ParentShowHint, true), VCL_PROPERTY_STORED(Color, IsColorStored, Graphics::clBtnFace),
                   VCL_PROPERTY(ParentColor, true), VCL_PROPERTY_STORED(Font, IsFontStored),
                   VCL_PROPERTY(ParentFont, true), VCL_PROPERTY(OnClick), VCL_PROPERTY(OnDblClick),
                   VCL_PROPERTY(OnMouseDown), VCL_PROPERTY(OnMouseUp), VCL_PROPERTY(OnMouseMove))

HFONT MessageFont() {
  static const OwnedFont font = [] {
    NONCLIENTMETRICSA metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    // Texts drawn in it are 8-bit in the process's code page, whatever the
    // system's own charset for the font is.
    metrics.lfMessageFont.lfCharSet = DEFAULT_CHARSET;
    OwnedFont made(CreateFontIndirectA(&metrics.lfMessageFont));
    Graphics::TMeasuringDC::SetLastingFont(made.get());
    return made;
  }();
  return font.get();
}

bool IsAccel(unsigned key, const AnsiString& caption) {
  const std::string& s = caption.str();
  for (size_t i = 0; i + 1 < s.size(); ++i) {
    if (s[i] != '&') continue;
    if (s[i + 1] == '&') {
      ++i;
      continue;
    }
    // The whole letter after '&' (bytes of it in UTF-8), against the key.
    const char* letter = s.data() + i + 1;
    std::wstring mark = Graphics::WideText(letter, CharSize(letter, static_cast<int>(s.size() - i - 1)));
    std::wstring typed = CodePointText(key);
    CharUpperBuffW(mark.data(), static_cast<DWORD>(mark.size()));
    CharUpperBuffW(typed.data(), static_cast<DWORD>(typed.size()));
    return !mark.empty() && mark == typed;
  }
  return false;
}

std::wstring CodePointText(unsigned code) {
  if (code < 0x10000) return std::wstring(1, static_cast<wchar_t>(code));
  if (code > 0x10FFFF) return std::wstring();
  code -= 0x10000;
  return {static_cast<wchar_t>(0xD800 + (code >> 10)), static_cast<wchar_t>(0xDC00 + (code & 0x3FF))};
}

TShiftState KeyboardShiftState() {
  TShiftState s;
  if (GetKeyState(VK_SHIFT) < 0) s << ssShift;
  if (GetKeyState(VK_MENU) < 0) s << ssAlt;
  if (GetKeyState(VK_CONTROL) < 0) s << ssCtrl;
  return s;
}

// The controls whose window procedures are running on this thread, innermost
// first, and the controls whose delete waits for them (see DestroyLater).
namespace {

// The message font as a font description, read once.
const LOGFONTA& MessageLogFont() {
  static const LOGFONTA font = [] {
    LOGFONTA f{};
    GetObjectA(MessageFont(), sizeof f, &f);
    return f;
  }();
  return font;
}

TShiftState MouseShiftState(WPARAM keys) {
  TShiftState s;
  if (keys & MK_SHIFT) s << ssShift;
  if (keys & MK_CONTROL) s << ssCtrl;
  if (keys & MK_LBUTTON) s << ssLeft;
  if (keys & MK_RBUTTON) s << ssRight;
  if (keys & MK_MBUTTON) s << ssMiddle;
  if (GetKeyState(VK_MENU) < 0) s << ssAlt;
  return s;
}

// Client coordinates of a mouse message; signed, as they are left or above
// the window while the mouse is captured.
int MouseX(LPARAM l) { return static_cast<short>(LOWORD(l)); }
int MouseY(LPARAM l) { return static_cast<short>(HIWORD(l)); }

}  // namespace

TControl::TControl(Classes::TComponent* owner) : TComponent(owner), font_(std::make_unique<Graphics::TFont>()) {
  const LOGFONTA& f = MessageLogFont();
  font_->SetName(f.lfFaceName);
  font_->SetHeight(f.lfHeight);
  // The charset stays DEFAULT_CHARSET, as the message font's (see MessageFont).
  font_->SetOnChange({this, &TControl::FontChanged});
  constraints_.SetOnChange({this, &TControl::ConstraintsChanged});
}

void TControl::ScaleBy(int m, int d) {
  if (m > 0 && d > 0 && m != d) ChangeScale(m, d);
}

void TControl::ChangeScale(int m, int d) {
  SetBounds(MulDiv(left_, m, d), MulDiv(top_, m, d), MulDiv(width_, m, d), MulDiv(height_, m, d));
  // The shared message font already suits the screen.
  if (!parentFont_ && !fontDefault_) font_->SetHeight(MulDiv(font_->GetHeight(), m, d));
}

Classes::TComponent* TControl::GetParentComponent() const { return parent_; }

void TControl::SetParentComponent(Classes::TComponent* value) {
  if (auto* parent = dynamic_cast<TWinControl*>(value)) SetParent(parent);
}

TControl::~TControl() {
  if (parent_) parent_->RemoveControl(this, false);
}

void TControl::UpdateBoundsFields(int left, int top, int width, int height) {
  if (left == left_ && top == top_ && width == width_ && height == height_) return;
  const bool resized = width != width_ || height != height_;
  left_ = left;
  top_ = top;
  width_ = width;
  height_ = height;
  Resize();
  if (parent_) {
    // Moved by someone else than the parent's layout: an aligned control is
    // laid out again, an anchored one measured where it is now.
    if (align_ != alNone && !parent_->layout_.IsPlacing(this))
      parent_->Realign();
    else
      parent_->layout_.Measure(this);
    parent_->NotifyChildrenChanged();
  }
  if (auto* w = AsWinControl(); w && resized) w->Realign();
}

void TControl::SetBounds(int left, int top, int width, int height) {
  width = constraints_.ConstrainWidth(std::max(width, 0));
  height = constraints_.ConstrainHeight(std::max(height, 0));
  if (left == left_ && top == top_ && width == width_ && height == height_) return;
  // A control without its own window paints on its parent: both places change.
  Invalidate();
  UpdateBoundsFields(left, top, width, height);
  Invalidate();
}

MyRect TControl::GetClientRect() const { return {0, 0, width_, height_}; }

void TControl::SetParent(TWinControl* parent) {
  if (parent == parent_) return;
  for (TWinControl* p = parent; p; p = p->GetParent())
    if (p == this) return;  // a control cannot live inside itself
  // A window can follow its control when the new parent has one.
  if (parent_) parent_->RemoveControl(this, parent && parent->HandleAllocated());
  if (!parent) return;
  parent->InsertControl(this);
  Perform(CM_PARENTCOLORCHANGED, 0, 0);
  Perform(CM_PARENTFONTCHANGED, 0, 0);
  parent->ShowChildWindow(this);
}

void TControl::SetAnchors(TAnchors value) {
  if (value == anchors_) return;
  if (parent_) parent_->layout_.Remove(this);
  anchors_ = value;
  if (parent_) parent_->layout_.Add(this);  // measured where it is now
}

// Brings the size inside the new limits at once.
void TControl::ConstraintsChanged(System::TObject*) { SetBounds(left_, top_, width_, height_); }

void TControl::SetColor(Graphics::TColor value) {
  if (value == color_) return;
  color_ = value;
  parentColor_ = false;
  Perform(CM_COLORCHANGED, 0, 0);
}

void TControl::SetParentColor(bool value) {
  if (value == parentColor_) return;
  parentColor_ = value;
  Perform(CM_PARENTCOLORCHANGED, 0, 0);
}

void TControl::SetParentFont(bool value) {
  if (value == parentFont_) return;
  parentFont_ = value;
  Perform(CM_PARENTFONTCHANGED, 0, 0);
}

HFONT TControl::FontHandle() const { return fontDefault_ ? MessageFont() : font_->GetHandle(); }

// A change made by the user, not taken from the parent, ends ParentFont.
void TControl::FontChanged(System::TObject*) {
  if (!takingFont_) parentFont_ = fontDefault_ = false;
  Perform(CM_FONTCHANGED, 0, 0);
}

bool TControl::GetShowHint() const { return parentShowHint_ && parent_ ? parent_->GetShowHint() : showHint_; }

void TControl::SetShowHint(bool value) {
  showHint_ = value;
  parentShowHint_ = false;
}

void TControl::BringToFront() {
  if (parent_) {
    auto& list = parent_->controls_;
    list.erase(std::find(list.begin(), list.end(), this));
    list.push_back(this);
  }
  if (auto* w = AsWinControl(); w && w->handle_)
    SetWindowPos(w->handle_, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  Invalidate();
}

void TControl::SendToBack() {
  if (parent_) {
    auto& list = parent_->controls_;
    list.erase(std::find(list.begin(), list.end(), this));
    list.insert(list.begin(), this);
  }
  if (auto* w = AsWinControl(); w && w->handle_)
    SetWindowPos(w->handle_, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  Invalidate();
}

MyPoint TControl::GetClientOrigin() const {
  MyPoint origin = parent_ ? parent_->GetClientOrigin() : MyPoint{};
  return {origin.x + left_, origin.y + top_};
}

MyPoint TControl::ClientToScreen(const MyPoint& point) const {
  const MyPoint origin = GetClientOrigin();
  return {point.x + origin.x, point.y + origin.y};
}

MyPoint TControl::ScreenToClient(const MyPoint& point) const {
  const MyPoint origin = GetClientOrigin();
  return {point.x - origin.x, point.y - origin.y};
}

void TControl::Update() {
  if (parent_) parent_->Update();
}

void TControl::MouseDown(TMouseButton button, TShiftState shift, int x, int y) {
  onMouseDown_(this, button, shift, x, y);
}
void TControl::MouseUp(TMouseButton button, TShiftState shift, int x, int y) { onMouseUp_(this, button, shift, x, y); }
void TControl::MouseMove(TShiftState shift, int x, int y) { onMouseMove_(this, shift, x, y); }

// A windowless control holds the mouse through its parent's window.
void TControl::SetMouseCapture(bool value) {
  if (!parent_ || !parent_->handle_) return;
  if (value) {
    parent_->captureControl_ = this;
    SetCapture(parent_->handle_);
  } else if (parent_->captureControl_ == this) {
    parent_->captureControl_ = nullptr;
    if (GetCapture() == parent_->handle_) ReleaseCapture();
  }
}

// The window's own handling first, then the events: a click needs the press
// and the release inside the control.
void TControl::MouseMessage(TMessage& message) {
  DefaultHandler(message);
  const int x = MouseX(message.LParam), y = MouseY(message.LParam);
  TShiftState shift = MouseShiftState(message.WParam);
  switch (message.Msg) {
    case WM_MOUSEMOVE:
      MouseMove(shift, x, y);
      return;
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDBLCLK:
    case WM_MBUTTONDBLCLK:
      shift << ssDouble;
      [[fallthrough]];
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN: {
      const TMouseButton button = message.Msg <= WM_LBUTTONDBLCLK   ? mbLeft
                                  : message.Msg <= WM_RBUTTONDBLCLK ? mbRight
                                                                    : mbMiddle;
      if (button == mbLeft) {
        if (controlStyle_.Contains(csCaptureMouse)) SetMouseCapture(true);
        if (controlStyle_.Contains(csClickEvents)) {
          clicked_ = !shift.Contains(ssDouble);
          if (shift.Contains(ssDouble)) DblClick();
        }
      }
      MouseDown(button, shift, x, y);
      return;
    }
    default: {
      const TMouseButton button = message.Msg == WM_LBUTTONUP   ? mbLeft
                                  : message.Msg == WM_RBUTTONUP ? mbRight
                                                                : mbMiddle;
      bool click = false;
      if (button == mbLeft) {
        if (controlStyle_.Contains(csCaptureMouse)) SetMouseCapture(false);
        const MyRect r = GetClientRect();
        click = clicked_ && x >= r.left && x < r.right && y >= r.top && y < r.bottom;
        clicked_ = false;
      }
      // OnMouseUp before OnClick: a click handler may free the control.
      MouseUp(button, shift, x, y);
      if (click) Click();
      return;
    }
  }
}

void TControl::SetText(const AnsiString& value) { text_ = value; }

void TControl::SetAlign(TAlign value) {
  if (value == align_) return;
  const TAlign old = align_;
  if (parent_) parent_->layout_.Remove(this);
  align_ = value;
  if (!parent_) return;
  parent_->layout_.Add(this);
  // Newly aligned, it may be the last of its kind, placed alone; leaving a
  // kind moves the others.
  if (old == alNone)
    parent_->AlignChild(this);
  else
    parent_->Realign();
}

void TControl::SetVisible(bool value) {
  if (value == visible_) return;
  visible_ = value;
  VisibleChanged();
  if (parent_ && align_ != alNone) {
    if (value)
      parent_->AlignChild(this);
    else
      parent_->Realign();
  }
  if (parent_) parent_->NotifyChildrenChanged();
  Invalidate();
}

void TControl::SetEnabled(bool value) {
  if (value == enabled_) return;
  enabled_ = value;
  EnabledChanged();
}

void TControl::Invalidate() {
  if (!parent_ || !parent_->HandleAllocated()) return;
  RECT r{left_, top_, left_ + width_, top_ + height_};
  InvalidateRect(parent_->GetHandle(), &r, TRUE);
}

LRESULT TControl::Perform(UINT msg, WPARAM wParam, LPARAM lParam) {
  TMessage m{msg, wParam, lParam, 0};
  WndProc(m);
  return m.Result;
}

void TControl::WndProc(TMessage& message) {
  switch (message.Msg) {
    case WM_MOUSEMOVE:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONUP:
    case WM_RBUTTONDBLCLK:
    case WM_MBUTTONDOWN:
    case WM_MBUTTONUP:
    case WM_MBUTTONDBLCLK:
      MouseMessage(message);
      return;
    case CM_COLORCHANGED:
    case CM_FONTCHANGED:
      Invalidate();
      return;
    case CM_PARENTCOLORCHANGED:
      if (parentColor_ && parent_) {
        SetColor(parent_->color_);
        parentColor_ = true;
      }
      return;
    case CM_PARENTFONTCHANGED:
      if (parentFont_ && parent_) {
        takingFont_ = true;
        fontDefault_ = parent_->fontDefault_;
        font_->Assign(parent_->font_.get());
        takingFont_ = false;
      }
      return;
    default:
      DefaultHandler(message);
  }
}

void TControl::DefaultHandler(TMessage&) {}

}  // namespace Controls
