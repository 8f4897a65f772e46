#include "platform/vcl/stdctrls/scroll_box.h"

#include <algorithm>

#include "platform/vcl/core/typinfo.h"

namespace Forms {

VCL_CLASS_IMPL(TControlScrollBar, Classes::TPersistent, VCL_PROPERTY(Increment, 8), VCL_PROPERTY(Position, 0))
VCL_COMPONENT_IMPL(TScrollingWinControl, Controls::TWinControl, VCL_PROPERTY_READONLY(HorzScrollBar),
                   VCL_PROPERTY_READONLY(VertScrollBar))
VCL_COMPONENT_IMPL(TScrollBox, TScrollingWinControl, VCL_PROPERTY(BorderStyle, bsSingle))

namespace {

int BarOf(Stdctrls::TScrollBarKind kind) { return kind == Stdctrls::sbHorizontal ? SB_HORZ : SB_VERT; }

}  // namespace

// ---- TControlScrollBar ----

TControlScrollBar::TControlScrollBar(TScrollingWinControl* control, Stdctrls::TScrollBarKind kind)
    : control_(control), kind_(kind) {}

int TControlScrollBar::ClientSize() const {
  const MyRect r = control_->GetClientRect();
  return kind_ == Stdctrls::sbHorizontal ? r.Width() : r.Height();
}

// The unaligned controls' far edges, put back where they lie unscrolled.
int TControlScrollBar::GetRange() const {
  int range = 0;
  for (int i = 0; i < control_->GetControlCount(); ++i) {
    const Controls::TControl* c = control_->GetControl(i);
    if (!c->GetVisible() || c->GetAlign() != Controls::alNone) continue;
    const int end = kind_ == Stdctrls::sbHorizontal ? c->GetLeft() + c->GetWidth() : c->GetTop() + c->GetHeight();
    range = std::max(range, end + position_);
  }
  return range;
}

bool TControlScrollBar::IsScrollBarVisible() const { return GetRange() > ClientSize(); }

void TControlScrollBar::SetPosition(int value) {
  value = std::clamp(value, 0, MaxPosition());
  if (value == position_) return;
  const int delta = position_ - value;
  position_ = value;
  if (kind_ == Stdctrls::sbHorizontal)
    control_->ScrollBy(delta, 0);
  else
    control_->ScrollBy(0, delta);
  control_->UpdateScrollBars();
}

void TControlScrollBar::Scroll(WORD code) {
  const int page = std::max(1, ClientSize());
  switch (code) {
    case SB_LINEUP:
      SetPosition(position_ - increment_);
      break;
    case SB_LINEDOWN:
      SetPosition(position_ + increment_);
      break;
    case SB_PAGEUP:
      SetPosition(position_ - page);
      break;
    case SB_PAGEDOWN:
      SetPosition(position_ + page);
      break;
    case SB_TOP:
      SetPosition(0);
      break;
    case SB_BOTTOM:
      SetPosition(MaxPosition());
      break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION: {
      SCROLLINFO si{};
      si.cbSize = sizeof si;
      si.fMask = SIF_TRACKPOS;
      GetScrollInfo(control_->GetHandle(), BarOf(kind_), &si);
      SetPosition(si.nTrackPos);
      break;
    }
    default:
      break;
  }
}

// ---- TScrollingWinControl ----

TScrollingWinControl::TScrollingWinControl(Classes::TComponent* owner)
    : TWinControl(owner),
      horz_(std::make_unique<TControlScrollBar>(this, Stdctrls::sbHorizontal)),
      vert_(std::make_unique<TControlScrollBar>(this, Stdctrls::sbVertical)) {}

TScrollingWinControl::~TScrollingWinControl() = default;

void TScrollingWinControl::ScrollBy(int dx, int dy) {
  ++scrolling_;
  for (int i = 0; i < GetControlCount(); ++i) {
    Controls::TControl* c = GetControl(i);
    if (c->GetAlign() == Controls::alNone)
      c->SetBounds(c->GetLeft() + dx, c->GetTop() + dy, c->GetWidth(), c->GetHeight());
  }
  --scrolling_;
  Invalidate();
}

void TScrollingWinControl::ScrollInView(Controls::TControl* control) {
  if (!control || control->GetParent() != this) return;
  const MyRect client = GetClientRect();
  const auto bring = [](TControlScrollBar* bar, int start, int size, int clientSize) {
    if (start < 0)
      bar->SetPosition(bar->GetPosition() + start);
    else if (start + size > clientSize)
      bar->SetPosition(bar->GetPosition() + std::min(start, start + size - clientSize));
  };
  bring(horz_.get(), control->GetLeft(), control->GetWidth(), client.Width());
  bring(vert_.get(), control->GetTop(), control->GetHeight(), client.Height());
}

// Showing one bar narrows the client area and may call for the other, so
// the bars are settled twice. Contents that fit again scroll back.
void TScrollingWinControl::UpdateScrollBars() {
  if (scrolling_ || !HandleAllocated() || GetComponentState().Contains(Classes::csDestroying)) return;
  ++scrolling_;
  for (int pass = 0; pass < 2; ++pass)
    for (TControlScrollBar* bar : {horz_.get(), vert_.get()}) {
      if (bar->position_ > bar->MaxPosition()) {
        const int delta = bar->position_ - bar->MaxPosition();
        bar->position_ -= delta;
        --scrolling_;
        if (bar->kind_ == Stdctrls::sbHorizontal)
          ScrollBy(delta, 0);
        else
          ScrollBy(0, delta);
        ++scrolling_;
      }
      SCROLLINFO si{};
      si.cbSize = sizeof si;
      si.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
      si.nMax = bar->IsScrollBarVisible() ? bar->GetRange() - 1 : 0;
      si.nPage = bar->IsScrollBarVisible() ? static_cast<UINT>(bar->ClientSize()) : 0;
      si.nPos = bar->position_;
      SetScrollInfo(GetHandle(), BarOf(bar->kind_), &si, TRUE);
    }
  --scrolling_;
}

void TScrollingWinControl::CreateWnd() {
  TWinControl::CreateWnd();
  UpdateScrollBars();
}

void TScrollingWinControl::WndProc(Controls::TMessage& message) {
  switch (message.Msg) {
    case WM_HSCROLL:
    case WM_VSCROLL:
      // A scroll bar control inside reports to its parent: that is not ours.
      if (message.LParam) break;
      (message.Msg == WM_HSCROLL ? horz_ : vert_)->Scroll(LOWORD(message.WParam));
      message.Result = 0;
      return;
    case WM_MOUSEWHEEL: {
      const int notches = GET_WHEEL_DELTA_WPARAM(message.WParam) / WHEEL_DELTA;
      vert_->SetPosition(vert_->position_ - notches * 3 * vert_->increment_);
      message.Result = 0;
      return;
    }
    default:
      break;
  }
  TWinControl::WndProc(message);
}

// ---- TScrollBox ----

TScrollBox::TScrollBox(Classes::TComponent* owner) : TScrollingWinControl(owner) {
  SetBounds(0, 0, 185, 41);
  SetTabStop(false);
}

void TScrollBox::CreateParams(Controls::TCreateParams& params) {
  TScrollingWinControl::CreateParams(params);
  params.Style |= WS_CLIPCHILDREN;
  if (borderStyle_ == bsSingle) params.ExStyle |= WS_EX_CLIENTEDGE;
}

void TScrollBox::SetBorderStyle(TFormBorderStyle value) {
  value = value == bsNone ? bsNone : bsSingle;
  if (value == borderStyle_) return;
  borderStyle_ = value;
  if (!HandleAllocated()) return;
  const LONG_PTR ex = GetWindowLongPtrA(GetHandle(), GWL_EXSTYLE);
  SetWindowLongPtrA(GetHandle(), GWL_EXSTYLE, value == bsSingle ? ex | WS_EX_CLIENTEDGE : ex & ~WS_EX_CLIENTEDGE);
  SetWindowPos(GetHandle(), nullptr, 0, 0, 0, 0,
               SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace Forms
