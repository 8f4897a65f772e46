#include "platform/vcl/stdctrls/com_ranges.h"
#include "platform/vcl/core/typinfo.h"

#include <commctrl.h>

#include <algorithm>

namespace {

// The common-control classes exist only once they are asked for.
void InitRangeClasses() {
  static const bool done = [] {
    INITCOMMONCONTROLSEX init{sizeof init, ICC_BAR_CLASSES | ICC_UPDOWN_CLASS | ICC_PROGRESS_CLASS};
    return InitCommonControlsEx(&init) != FALSE;
  }();
  (void)done;
}

// What the native 16-bit fields keep of a value.
int Low16(int value) { return static_cast<short>(value); }

}  // namespace

namespace Stdctrls {

using Controls::TCreateParams;
using Controls::TMessage;

VCL_COMPONENT_IMPL(TScrollBar, Controls::TWinControl, VCL_PROPERTY(TabStop, true), VCL_PROPERTY(Kind, sbHorizontal),
                   VCL_PROPERTY(Min, 0), VCL_PROPERTY(Max, 100), VCL_PROPERTY(Position, 0),
                   VCL_PROPERTY(SmallChange, 1), VCL_PROPERTY(LargeChange, 1), VCL_PROPERTY(OnChange))

TScrollBar::TScrollBar(Classes::TComponent* owner) : TWinControl(owner) {
  SetBounds(0, 0, 121, GetSystemMetrics(SM_CYHSCROLL));
  SetTabStop(true);
  SetControlStyle({});  // the window tracks the mouse in a loop of its own
}

void TScrollBar::CreateParams(TCreateParams& params) {
  TWinControl::CreateParams(params);
  params.SystemClass = "SCROLLBAR";
  params.Style |= kind_ == sbHorizontal ? SBS_HORZ : SBS_VERT;
}

void TScrollBar::CreateWnd() {
  TWinControl::CreateWnd();
  UpdateWindow();
}

void TScrollBar::UpdateWindow() {
  if (!HandleAllocated()) return;
  SCROLLINFO info{sizeof info, SIF_RANGE | SIF_POS, min_, max_, 0, position_, 0};
  SetScrollInfo(GetHandle(), SB_CTL, &info, TRUE);
}

// A turned bar keeps its length: width and height change places.
void TScrollBar::SetKind(TScrollBarKind value) {
  if (value == kind_) return;
  kind_ = value;
  // Turned on its side; a stored design has its bounds already.
  if (!GetComponentState().Contains(Classes::csLoading)) SetBounds(GetLeft(), GetTop(), GetHeight(), GetWidth());
  if (HandleAllocated()) DestroyHandle();  // the direction is fixed at creation
}

void TScrollBar::SetParams(int position, int min, int max) {
  max = std::max(max, min);
  position = std::clamp(position, min, max);
  if (position == position_ && min == min_ && max == max_) return;
  const bool moved = position != position_;
  position_ = position;
  min_ = min;
  max_ = max;
  UpdateWindow();
  if (moved) onChange_(this);
}

// The system's scroll bar only reports what the user did; moving is ours.
void TScrollBar::Notified(TMessage& message) {
  if (message.Msg != Controls::CN_HSCROLL && message.Msg != Controls::CN_VSCROLL) return;
  switch (LOWORD(message.WParam)) {
    case SB_LINEUP:
      SetPosition(position_ - smallChange_);
      break;
    case SB_LINEDOWN:
      SetPosition(position_ + smallChange_);
      break;
    case SB_PAGEUP:
      SetPosition(position_ - largeChange_);
      break;
    case SB_PAGEDOWN:
      SetPosition(position_ + largeChange_);
      break;
    case SB_THUMBPOSITION:
    case SB_THUMBTRACK: {
      // The message carries 16 bits of the position; the bar has all 32.
      SCROLLINFO info{sizeof info, SIF_TRACKPOS, 0, 0, 0, 0, 0};
      GetScrollInfo(GetHandle(), SB_CTL, &info);
      SetPosition(info.nTrackPos);
      break;
    }
    case SB_TOP:
      SetPosition(min_);
      break;
    case SB_BOTTOM:
      SetPosition(max_);
      break;
    default:
      break;
  }
}

}  // namespace Stdctrls

namespace Comctrls {

using Controls::TCreateParams;
using Controls::TMessage;

VCL_COMPONENT_IMPL(TTrackBar, Controls::TWinControl, VCL_PROPERTY(TabStop, true),
                   VCL_PROPERTY(Orientation, trHorizontal), VCL_PROPERTY(Min, 0), VCL_PROPERTY(Max, 10),
                   VCL_PROPERTY(Position, 0), VCL_PROPERTY(Frequency, 1), VCL_PROPERTY(OnChange))
VCL_COMPONENT_IMPL(TProgressBar, Controls::TWinControl, VCL_PROPERTY(Min, 0), VCL_PROPERTY(Max, 100),
                   VCL_PROPERTY(Position, 0), VCL_PROPERTY(Step, 10), VCL_PROPERTY(Smooth, false))
VCL_COMPONENT_IMPL(TCustomUpDown, Controls::TWinControl, VCL_PROPERTY(Associate), VCL_PROPERTY(Min, 0),
                   VCL_PROPERTY(Max, 100), VCL_PROPERTY(Position, 0), VCL_PROPERTY(Increment, 1),
                   VCL_PROPERTY(Wrap, false), VCL_PROPERTY(Orientation, udVertical), VCL_PROPERTY(OnClick),
                   VCL_PROPERTY(OnChanging))
VCL_COMPONENT_IMPL(TUpDown, TCustomUpDown)

// ---- TTrackBar ----

TTrackBar::TTrackBar(Classes::TComponent* owner) : TWinControl(owner) {
  SetBounds(0, 0, 150, 45);
  SetTabStop(true);
  SetControlStyle({});
}

void TTrackBar::CreateParams(TCreateParams& params) {
  InitRangeClasses();
  TWinControl::CreateParams(params);
  params.SystemClass = TRACKBAR_CLASSA;
  params.Style |= TBS_AUTOTICKS | (orientation_ == trHorizontal ? TBS_HORZ : TBS_VERT);
}

void TTrackBar::CreateWnd() {
  TWinControl::CreateWnd();
  if (!HandleAllocated()) return;
  SendMessageA(GetHandle(), TBM_SETRANGEMIN, FALSE, min_);
  SendMessageA(GetHandle(), TBM_SETRANGEMAX, FALSE, max_);
  SendMessageA(GetHandle(), TBM_SETTICFREQ, frequency_, 0);
  SendMessageA(GetHandle(), TBM_SETPOS, TRUE, position_);
}

void TTrackBar::DestroyWnd() {
  GetPosition();  // the user's last move outlives the window
  TWinControl::DestroyWnd();
}

int TTrackBar::GetPosition() const {
  if (HandleAllocated())
    position_ = static_cast<int>(SendMessageA(const_cast<TTrackBar*>(this)->GetHandle(), TBM_GETPOS, 0, 0));
  return position_;
}

void TTrackBar::SetMin(int value) {
  min_ = value;
  max_ = std::max(max_, min_);
  if (HandleAllocated()) SendMessageA(GetHandle(), TBM_SETRANGEMIN, TRUE, min_);
  SetPosition(GetPosition());
}

void TTrackBar::SetMax(int value) {
  max_ = value;
  min_ = std::min(max_, min_);
  if (HandleAllocated()) SendMessageA(GetHandle(), TBM_SETRANGEMAX, TRUE, max_);
  SetPosition(GetPosition());
}

void TTrackBar::SetPosition(int value) {
  value = std::clamp(value, min_, max_);
  const int old = GetPosition();
  position_ = value;
  if (HandleAllocated()) SendMessageA(GetHandle(), TBM_SETPOS, TRUE, value);
  if (value != old) Changed();
}

void TTrackBar::SetOrientation(TTrackBarOrientation value) {
  if (value == orientation_) return;
  orientation_ = value;
  if (!GetComponentState().Contains(Classes::csLoading)) SetBounds(GetLeft(), GetTop(), GetHeight(), GetWidth());
  if (HandleAllocated()) DestroyHandle();
}

void TTrackBar::SetFrequency(int value) {
  frequency_ = std::max(value, 1);
  if (HandleAllocated()) SendMessageA(GetHandle(), TBM_SETTICFREQ, frequency_, 0);
}

void TTrackBar::Changed() { onChange_(this); }

// The track bar moves itself and tells its parent afterwards.
void TTrackBar::Notified(TMessage& message) {
  if (message.Msg == Controls::CN_HSCROLL || message.Msg == Controls::CN_VSCROLL) Changed();
}

// ---- TProgressBar ----

TProgressBar::TProgressBar(Classes::TComponent* owner) : TWinControl(owner) { SetBounds(0, 0, 150, 16); }

void TProgressBar::CreateParams(TCreateParams& params) {
  InitRangeClasses();
  TWinControl::CreateParams(params);
  params.SystemClass = PROGRESS_CLASSA;
  if (smooth_) params.Style |= PBS_SMOOTH;
}

void TProgressBar::CreateWnd() {
  TWinControl::CreateWnd();
  UpdateWindow();
}

void TProgressBar::UpdateWindow() {
  if (!HandleAllocated()) return;
  SendMessageA(GetHandle(), PBM_SETRANGE32, min_, max_);
  SendMessageA(GetHandle(), PBM_SETPOS, position_, 0);
}

void TProgressBar::SetMin(int value) {
  min_ = Low16(value);
  position_ = std::clamp(position_, std::min(min_, max_), std::max(min_, max_));
  UpdateWindow();
}

void TProgressBar::SetMax(int value) {
  max_ = Low16(value);
  position_ = std::clamp(position_, std::min(min_, max_), std::max(min_, max_));
  UpdateWindow();
}

void TProgressBar::SetPosition(int value) {
  position_ = std::clamp(Low16(value), std::min(min_, max_), std::max(min_, max_));
  if (HandleAllocated()) SendMessageA(GetHandle(), PBM_SETPOS, position_, 0);
}

void TProgressBar::SetSmooth(bool value) {
  if (value == smooth_) return;
  smooth_ = value;
  if (HandleAllocated()) DestroyHandle();
}

// ---- TCustomUpDown ----

TCustomUpDown::TCustomUpDown(Classes::TComponent* owner) : TWinControl(owner) {
  SetBounds(0, 0, 17, 25);
  SetControlStyle({});  // its OnClick tells the arrow, see Click(TUDBtnType)
}

void TCustomUpDown::CreateParams(TCreateParams& params) {
  InitRangeClasses();
  TWinControl::CreateParams(params);
  params.SystemClass = UPDOWN_CLASSA;
  params.Style |= UDS_SETBUDDYINT | UDS_ALIGNRIGHT | UDS_ARROWKEYS | UDS_NOTHOUSANDS;
  if (orientation_ == udHorizontal) params.Style |= UDS_HORZ;
  if (wrap_) params.Style |= UDS_WRAP;
}

// The buddy first: the position set after it is shown in the buddy, while a
// buddy set later would be read back as the position.
void TCustomUpDown::CreateWnd() {
  TWinControl::CreateWnd();
  if (HandleAllocated() && associate_)
    SendMessageA(GetHandle(), UDM_SETBUDDY, reinterpret_cast<WPARAM>(associate_->GetHandle()), 0);
  UpdateWindow();
}

void TCustomUpDown::DestroyWnd() {
  GetPosition();
  TWinControl::DestroyWnd();
}

void TCustomUpDown::UpdateWindow() {
  if (!HandleAllocated()) return;
  // The 16-bit messages: the native range and position are 16-bit.
  SendMessageA(GetHandle(), UDM_SETRANGE, 0, MAKELPARAM(max_, min_));
  SendMessageA(GetHandle(), UDM_SETPOS, 0, MAKELPARAM(position_, 0));
  UDACCEL accel{0, static_cast<UINT>(increment_)};
  SendMessageA(GetHandle(), UDM_SETACCEL, 1, reinterpret_cast<LPARAM>(&accel));
}

short TCustomUpDown::GetPosition() const {
  if (HandleAllocated()) {
    const auto result = SendMessageA(const_cast<TCustomUpDown*>(this)->GetHandle(), UDM_GETPOS, 0, 0);
    if (HIWORD(result) == 0) position_ = static_cast<short>(LOWORD(result));  // else the buddy's text is no number
  }
  return position_;
}

void TCustomUpDown::SetMin(short value) {
  min_ = value;
  SetPosition(GetPosition());
  UpdateWindow();
}

void TCustomUpDown::SetMax(short value) {
  max_ = value;
  SetPosition(GetPosition());
  UpdateWindow();
}

void TCustomUpDown::SetPosition(short value) {
  position_ = std::clamp(value, std::min(min_, max_), std::max(min_, max_));
  if (HandleAllocated()) SendMessageA(GetHandle(), UDM_SETPOS, 0, MAKELPARAM(position_, 0));
}

void TCustomUpDown::SetIncrement(int value) {
  increment_ = std::max(value, 1);
  UpdateWindow();
}

void TCustomUpDown::SetWrap(bool value) {
  if (value == wrap_) return;
  wrap_ = value;
  if (HandleAllocated()) DestroyHandle();
}

void TCustomUpDown::SetOrientation(TUDOrientation value) {
  if (value == orientation_) return;
  orientation_ = value;
  if (HandleAllocated()) DestroyHandle();
}

void TCustomUpDown::SetAssociate(Controls::TWinControl* value) {
  if (value == this) value = nullptr;
  const short position = GetPosition();  // before the new buddy's text could be taken for it
  associate_ = value;
  if (value) value->FreeNotification(this);
  if (HandleAllocated())
    SendMessageA(GetHandle(), UDM_SETBUDDY, value ? reinterpret_cast<WPARAM>(value->GetHandle()) : 0, 0);
  if (value) SetPosition(position);  // shown in the new buddy
}

void TCustomUpDown::Notification(Classes::TComponent* component, Classes::TOperation operation) {
  TWinControl::Notification(component, operation);
  if (operation == Classes::opRemove && component == associate_) {
    associate_ = nullptr;
    if (HandleAllocated()) SendMessageA(GetHandle(), UDM_SETBUDDY, 0, 0);
  }
}

bool TCustomUpDown::CanChange() {
  bool allow = true;
  onChanging_(this, allow);
  return allow;
}

// The window asks (UDN_DELTAPOS, non-zero refuses) before it moves, and
// reports the new position afterwards whether or not it moved; OnClick
// runs for an allowed move that changed the position.
void TCustomUpDown::Notified(TMessage& message) {
  if (message.Msg == Controls::CN_NOTIFY) {
    auto* info = reinterpret_cast<NMUPDOWN*>(message.LParam);
    if (info->hdr.code != UDN_DELTAPOS) return;
    pending_ = CanChange();
    // The arrow is known here only: past an end with Wrap the position jumps the other way.
    pendingButton_ = info->iDelta > 0 ? btNext : btPrev;
    pendingFrom_ = static_cast<short>(info->iPos);
    message.Result = pending_ ? 0 : 1;
    return;
  }
  if ((message.Msg == Controls::CN_VSCROLL || message.Msg == Controls::CN_HSCROLL) &&
      LOWORD(message.WParam) == SB_THUMBPOSITION) {
    const auto now = static_cast<short>(HIWORD(message.WParam));
    const bool moved = pending_ && now != pendingFrom_;
    pending_ = false;
    position_ = now;
    if (moved) Click(pendingButton_);
  }
}

}  // namespace Comctrls
