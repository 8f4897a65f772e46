#include "platform/vcl/controls/win_control.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string>

#include "platform/ostrel/dc_changer.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/controls/custom_control.h"
#include "platform/vcl/controls/window_proc_impl.h"
#include "platform/vcl/core/typinfo.h"
#include "platform/vcl/graphics/measuring_dc.h"
#include "platform/vcl/graphics/screen_density.h"

namespace Controls {

namespace {

// Counts a run in progress, however it ends.
struct Counting {
  explicit Counting(int& count) : count_(count) { ++count_; }
  ~Counting() { --count_; }
  Counting(const Counting&) = delete;
  Counting& operator=(const Counting&) = delete;

 private:
  int& count_;
};

struct EnableAlignAtEnd {
  TWinControl* control;
  ~EnableAlignAtEnd() { control->EnableAlign(); }
};

}  // namespace

VCL_COMPONENT_IMPL(TWinControl, TControl, VCL_PROPERTY(TabStop, false), VCL_PROPERTY(TabOrder), VCL_PROPERTY(OnEnter),
                   VCL_PROPERTY(OnExit), VCL_PROPERTY(OnKeyDown), VCL_PROPERTY(OnKeyUp), VCL_PROPERTY(OnKeyPress))

TWinControl::TWinControl(Classes::TComponent* owner) : TControl(owner), brush_(std::make_unique<Graphics::TBrush>()) {
  brush_->SetColor(GetColor());
}

bool TWinControl::DestroyLater() {
  // Freed with an owner or parent, even while it waits: there is no later
  // for it (BeforeDestruction takes it off the waiting list).
  if (GoesWithAnother(this)) return false;
  if (deferred_) return true;
  if (!InDispatch(this)) return false;
  WindowProcAccess::Defer(this);
  SetVisible(false);
  return true;
}

void TWinControl::BeforeDestruction() {
  WindowProcAccess::Undefer(this);  // destroyed another way meanwhile: no longer waiting
  // Done here while derived parts still exist, so their WndProc sees the
  // window's last messages; the destructor repeats it for objects not deleted.
  // The window goes first, with its children's in one call; then the child
  // controls, then the components this one owns.
  Destroying();
  DestroyHandle();
  DestroyChildren();
  TControl::BeforeDestruction();
}

TWinControl::~TWinControl() {
  DestroyHandle();
  DestroyChildren();
}

// Last first, each taken off the lists by itself; nothing is laid out again
// while this control goes.
void TWinControl::DestroyChildren() {
  while (!controls_.empty()) {
    TControl* child = controls_.back();
    RemoveControl(child, false);
    delete child;
  }
}

void TWinControl::InsertControl(TControl* control) {
  controls_.push_back(control);
  ++childrenVersion_;
  control->alignOrder_ = ++alignCounter_;
  control->parent_ = this;
  auto* w = control->AsWinControl();
  if (w) {
    w->tabOrder_ = static_cast<int>(tabList_.size());
    tabList_.push_back(w);
    // A window kept from the parent it left moves into this one's.
    if (w->handle_) w->MoveWindowTo(this);
  }
  layout_.Add(control);
  if (control->align_ != alNone) AlignChild(control);
  control->Invalidate();
  NotifyChildrenChanged();
}

// A child of a window that exists gets its window at once, where it was
// placed: it appears if the parent is on the screen. A design being read
// makes its windows when it is loaded.
void TWinControl::ShowChildWindow(TControl* control) {
  auto* w = control->AsWinControl();
  if (w && !w->handle_ && handle_ && w->parent_ == this && !IsLoading(this) && !IsLoading(control)) w->GetHandle();
}

void TWinControl::RemoveControl(TControl* control, bool keepWindow) {
  // From the back: the last child is the one that mostly goes.
  auto it = std::find(controls_.rbegin(), controls_.rend(), control);
  if (it == controls_.rend()) return;
  control->Invalidate();
  auto* w = control->AsWinControl();
  if (w && !keepWindow) w->DestroyHandle();
  controls_.erase(std::next(it).base());
  ++childrenVersion_;
  if (captureControl_ == control) captureControl_ = nullptr;
  if (w) {
    const auto index = static_cast<size_t>(w->tabOrder_);
    if (index < tabList_.size() && tabList_[index] == w) tabList_.erase(tabList_.begin() + w->tabOrder_);
    for (size_t i = index; i < tabList_.size(); ++i) tabList_[i]->tabOrder_ = static_cast<int>(i);
    w->tabOrder_ = -1;
  }
  layout_.Remove(control);
  control->parent_ = nullptr;
  if (GetComponentState().Contains(Classes::csDestroying)) return;
  if (control->align_ != alNone && control->visible_) Realign();
  NotifyChildrenChanged();
}

void TWinControl::ChangeScale(int m, int d) {
  DisableAlign();
  const EnableAlignAtEnd enable{this};
  TControl::ChangeScale(m, d);
  const std::vector<TControl*> children = controls_;
  for (TControl* c : children) c->ChangeScale(m, d);
  // The children were scaled with this control, anchored or not.
  layout_.Remeasure();
}

void TWinControl::GetChildren(Classes::TGetChildProc proc, Classes::TComponent* root) {
  const std::vector<TControl*> children = controls_;
  for (TControl* c : children)
    if (c->GetOwner() == root) proc(c);
}

TControl* TWinControl::GetControl(int index) const {
  if (index < 0 || index >= GetControlCount()) Classes::ListIndexError(index);
  return controls_[static_cast<size_t>(index)];
}

bool TWinControl::IsLoading(const Classes::TComponent* component) {
  return component->GetComponentState().Contains(Classes::csLoading);
}

void TWinControl::DisableAlign() { ++alignLevel_; }

void TWinControl::EnableAlign() {
  if (alignLevel_ == 0 || --alignLevel_ > 0) return;
  if (alignPending_)
    Realign();
  else
    FlushChildrenChanged();
}

void TWinControl::Loaded() {
  TControl::Loaded();
  if (alignPending_)
    Realign();
  else
    FlushChildrenChanged();
  // Read into a parent on the screen: the window comes now, with the
  // properties read.
  if (!handle_ && GetParent() && GetParent()->handle_) GetHandle();
}

void TWinControl::RemeasureAnchors() { layout_.Remeasure(); }

// Nothing is laid out while layout is disabled, a design is read or the
// control goes; the first chance after that lays out once.
bool TWinControl::AlignDeferred() {
  if (alignLevel_ == 0 && !IsLoading(this)) return false;
  alignPending_ = true;
  layout_.Invalidate();
  return true;
}

void TWinControl::Realign() {
  if (GetComponentState().Contains(Classes::csDestroying)) return;
  if (aligning_) {
    layout_.Interrupt();  // the layout running now starts again
    return;
  }
  if (AlignDeferred()) return;
  alignPending_ = false;
  {
    const Counting aligning{aligning_};
    layout_.Apply();
  }
  FlushChildrenChanged();
}

void TWinControl::AlignChild(TControl* child) {
  if (aligning_ || GetComponentState().Contains(Classes::csDestroying) || !layout_.CanAppend(child)) {
    Realign();
    return;
  }
  if (AlignDeferred()) return;
  bool placed;
  {
    const Counting aligning{aligning_};
    placed = layout_.Append(child);
  }
  if (placed)
    FlushChildrenChanged();
  else
    Realign();
}

void TWinControl::NotifyChildrenChanged() {
  if (aligning_ || alignLevel_ > 0 || IsLoading(this))
    childrenChangedPending_ = true;
  else
    ChildrenChanged();
}

void TWinControl::FlushChildrenChanged() {
  if (!childrenChangedPending_ || aligning_ || alignLevel_ > 0 || IsLoading(this)) return;
  childrenChangedPending_ = false;
  ChildrenChanged();
}

bool TWinControl::ContainsControl(const TControl* control) const {
  return std::find(controls_.begin(), controls_.end(), control) != controls_.end();
}

HWND TWinControl::GetHandle() {
  if (!handle_) CreateWnd();
  return handle_;
}

void TWinControl::SetParentWindow(HWND value) {
  if (value == parentWindow_) return;
  parentWindow_ = value;
  if (!GetParent()) DestroyHandle();
}

void TWinControl::CreateParams(TCreateParams& params) {
  params = TCreateParams{};
  params.Style = WS_CLIPCHILDREN | (tabStop_ ? WS_TABSTOP : 0);
  params.Caption = text_.c_str();  // the member: CreateWnd uses it after this returns
  if (GetParent() || parentWindow_)
    params.Style |= WS_CHILD | WS_CLIPSIBLINGS;
  else
    params.Style |= WS_POPUP;
  if (GetVisible() && (params.Style & WS_CHILD)) params.Style |= WS_VISIBLE;
  if (!GetEnabled()) params.Style |= WS_DISABLED;
  params.X = GetLeft();
  params.Y = GetTop();
  params.Width = GetWidth();
  params.Height = GetHeight();
  params.ClassStyle = CS_DBLCLKS;
  params.Background = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_BTNFACE + 1));
  std::snprintf(params.WinClassName, sizeof params.WinClassName, "%s", ClassName().c_str());
}

void TWinControl::CreateWnd() {
  TCreateParams params;
  CreateParams(params);
  if (TWinControl* parent = GetParent()) {
    params.WndParent = parent->GetHandle();
    if (!params.WndParent) return;
    // Making the parent's window made this one's too (it makes its children's).
    if (handle_) return;
  } else if (params.Style & WS_CHILD) {
    params.WndParent = parentWindow_;
  }
  if (!WindowProcAccess::Register(params, defWndProc_)) return;
  // The procedure stores the handle at WM_NCCREATE already, so messages sent
  // during creation reach a control that knows its window.
  HWND wnd = CreateWindowExA(params.ExStyle, params.WinClassName, params.Caption, params.Style, params.X, params.Y,
                             params.Width, params.Height, params.WndParent, nullptr, WindowProcAccess::Module(), this);
  handle_ = wnd;
  if (wnd) SendMessageA(wnd, WM_SETFONT, reinterpret_cast<WPARAM>(FontHandle()), FALSE);
  // The windows of the controls inside come with it, so that it shows whole.
  if (wnd)
    for (TControl* c : std::vector<TControl*>(controls_))
      if (auto* w = c->AsWinControl()) w->GetHandle();
  // A top-level window is shown without taking the foreground from whoever
  // has it.
  if (wnd && !(params.Style & WS_CHILD) && GetVisible()) ShowWindow(wnd, SW_SHOWNOACTIVATE);
  // The window system may have adjusted the size (minimum sizes of top-level
  // windows); the control reports what the window really is.
  if (wnd) ReadBoundsFromWindow();
}

void TWinControl::DestroyWnd() {
  // A child's window goes with its parent's: the system destroys the whole
  // tree in one call, while nothing of it is painted any more.
  if (parentDestroysWindow_) return;
  OwnedWindow::Close(handle_);  // the window procedure clears handle_ at WM_NCDESTROY
  handle_ = nullptr;
}

void TWinControl::DestroyHandle() {
  if (!handle_) return;
  // The children hear first: their DestroyWnd may keep what the window holds.
  for (TControl* c : controls_)
    if (auto* w = c->AsWinControl(); w && w->handle_) {
      w->parentDestroysWindow_ = true;
      struct Reset {
        bool& flag;
        ~Reset() { flag = false; }
      } reset{w->parentDestroysWindow_};
      w->DestroyHandle();
    }
  DestroyWnd();
}

// The window follows its control into the new parent's window; a top-level
// window cannot become a child and is made again when needed.
void TWinControl::MoveWindowTo(TWinControl* parent) {
  if (!parent->handle_ || !(GetWindowLongA(handle_, GWL_STYLE) & WS_CHILD)) {
    DestroyHandle();
    return;
  }
  const MyRect bounds = GetBoundsRect();
  ::SetParent(handle_, parent->handle_);
  // In front, as the last child is; where the control says, whatever the
  // move made of the window's place.
  SetWindowPos(handle_, HWND_TOP, bounds.left, bounds.top, bounds.Width(), bounds.Height(), SWP_NOACTIVATE);
}

void TWinControl::ReadBoundsFromWindow() {
  RECT r;
  if (!GetWindowRect(handle_, &r)) return;
  HWND parent = GetAncestor(handle_, GA_PARENT);
  if (parent && (GetWindowLongA(handle_, GWL_STYLE) & WS_CHILD))
    MapWindowPoints(HWND_DESKTOP, parent, reinterpret_cast<POINT*>(&r), 2);
  UpdateBoundsFields(r.left, r.top, r.right - r.left, r.bottom - r.top);
}

void TWinControl::SetBounds(int left, int top, int width, int height) {
  if (!handle_) {
    TControl::SetBounds(left, top, width, height);
    return;
  }
  width = GetConstraints()->ConstrainWidth(std::max(width, 0));
  height = GetConstraints()->ConstrainHeight(std::max(height, 0));
  // WM_WINDOWPOSCHANGED keeps the stored bounds those of the window: a layout
  // that puts a child where it is costs no trip to the window system.
  if (left == GetLeft() && top == GetTop() && width == GetWidth() && height == GetHeight()) return;
  SetWindowPos(handle_, nullptr, left, top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

MyRect TWinControl::GetClientRect() const {
  RECT r;
  if (handle_ && ::GetClientRect(handle_, &r)) return {r.left, r.top, r.right, r.bottom};
  return TControl::GetClientRect();
}

void TWinControl::Invalidate() {
  if (handle_) InvalidateRect(handle_, nullptr, TRUE);
}

void TWinControl::Update() {
  if (handle_) UpdateWindow(handle_);
}

MyPoint TWinControl::GetClientOrigin() const {
  POINT p{0, 0};
  ::ClientToScreen(const_cast<TWinControl*>(this)->GetHandle(), &p);
  return {p.x, p.y};
}

void TWinControl::SetMouseCapture(bool value) {
  if (value && handle_)
    SetCapture(handle_);
  else if (!value && handle_ && GetCapture() == handle_)
    ReleaseCapture();
}

void TWinControl::NotifyControls(UINT msg) {
  // A copy: a handler may change the list; only then is each child checked
  // against it.
  const std::vector<TControl*> children = controls_;
  const unsigned version = childrenVersion_;
  for (TControl* c : children)
    if (childrenVersion_ == version || ContainsControl(c)) c->Perform(msg, 0, 0);
}

// A mouse message over a windowless child (the topmost enabled visible one
// under the mouse, or the one holding the mouse) is that child's.
bool TWinControl::ControlMouseMessage(TMessage& message) {
  TControl* target = nullptr;
  if (captureControl_ && GetCapture() == handle_) {
    target = captureControl_;
  } else {
    captureControl_ = nullptr;
    target = ControlAtPos({static_cast<short>(LOWORD(message.LParam)), static_cast<short>(HIWORD(message.LParam))});
  }
  if (!target) return false;
  const int x = static_cast<short>(LOWORD(message.LParam)) - target->left_;
  const int y = static_cast<short>(HIWORD(message.LParam)) - target->top_;
  message.Result = target->Perform(message.Msg, message.WParam, MAKELPARAM(x, y));
  return true;
}

void TWinControl::VisibleChanged() {
  if (handle_) ShowWindow(handle_, GetVisible() ? SW_SHOWNOACTIVATE : SW_HIDE);
}

void TWinControl::EnabledChanged() {
  if (handle_) EnableWindow(handle_, GetEnabled());
}

void TWinControl::WndProc(TMessage& message) {
  switch (message.Msg) {
    case WM_PAINT:
      // Windowless children are painted over the window's own painting; a
      // system class paints on the context it is handed.
      if (!message.WParam && (defWndProc_ == &DefWindowProcA || HasGraphicControls())) {
        const OwnedPaintDC dc(handle_);
        if (defWndProc_ != &DefWindowProcA) {
          message.WParam = reinterpret_cast<WPARAM>(dc.get());
          DefaultHandler(message);
        }
        PaintControls(dc.get(), dc.area());
        return;
      }
      break;
    case WM_ERASEBKGND:
      if (defWndProc_ == &DefWindowProcA) {
        RECT r;
        ::GetClientRect(handle_, &r);
        FillRect(reinterpret_cast<HDC>(message.WParam), &r, BackgroundBrush());
        message.Result = 1;
        return;
      }
      break;
    case WM_GETFONT:
      // The default procedure keeps no font: answer with the control's.
      if (defWndProc_ == &DefWindowProcA) {
        message.Result = reinterpret_cast<LRESULT>(FontHandle());
        return;
      }
      break;
    case CM_COLORCHANGED:
      brush_->SetColor(GetColor());
      NotifyControls(CM_PARENTCOLORCHANGED);
      Invalidate();
      return;
    case CM_FONTCHANGED:
      if (handle_) SendMessageA(handle_, WM_SETFONT, reinterpret_cast<WPARAM>(FontHandle()), TRUE);
      NotifyControls(CM_PARENTFONTCHANGED);
      Invalidate();
      return;
    case CN_CTLCOLORMSGBOX:
    case CN_CTLCOLOREDIT:
    case CN_CTLCOLORLISTBOX:
    case CN_CTLCOLORBTN:
    case CN_CTLCOLORDLG:
    case CN_CTLCOLORSTATIC: {
      // The system control paints with this context after we return, so the
      // colours stay set in it (no changer to put them back).
      auto dc = reinterpret_cast<HDC>(message.WParam);
      SetTextColor(dc, static_cast<COLORREF>(Graphics::ColorToRGB(GetFont()->GetColor())));
      SetBkColor(dc, static_cast<COLORREF>(Graphics::ColorToRGB(GetColor())));
      message.Result = reinterpret_cast<LRESULT>(BackgroundBrush());
      return;
    }
    case WM_CAPTURECHANGED:
      captureControl_ = nullptr;
      break;
    case WM_WINDOWPOSCHANGED: {
      auto* pos = reinterpret_cast<const WINDOWPOS*>(message.LParam);
      if (!(pos->flags & SWP_NOSIZE) || !(pos->flags & SWP_NOMOVE)) ReadBoundsFromWindow();
      break;
    }
    case WM_SIZE:
      // The client area can change while the window keeps its size: a menu
      // bar or a scroll bar came or went. A resize was laid out already.
      if (!layout_.Fits(GetClientRect())) Realign();
      break;
    case WM_GETMINMAXINFO: {
      DefaultHandler(message);
      // Dragging the frame, maximising: the system asks the limits here.
      auto* info = reinterpret_cast<MINMAXINFO*>(message.LParam);
      const TSizeConstraints& c = *GetConstraints();
      if (c.GetMinWidth() > 0) info->ptMinTrackSize.x = c.GetMinWidth();
      if (c.GetMinHeight() > 0) info->ptMinTrackSize.y = c.GetMinHeight();
      if (c.GetMaxWidth() > 0) info->ptMaxTrackSize.x = info->ptMaxSize.x = c.GetMaxWidth();
      if (c.GetMaxHeight() > 0) info->ptMaxTrackSize.y = info->ptMaxSize.y = c.GetMaxHeight();
      return;
    }
    case WM_SETTINGCHANGE:
    case WM_DISPLAYCHANGE:
    case WM_DPICHANGED:
      Graphics::RefreshScreenPixelsPerInch();
      break;
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
      if (ControlMouseMessage(message)) return;
      break;
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
    case WM_KEYUP:
    case WM_SYSKEYUP:
    case WM_CHAR:
    case WM_SYSCHAR:
      if (HandleKey(message)) return;
      break;
    case WM_UNICHAR:
    case CM_SYSUNICHAR:
      TypedChar(message, WindowProcAccess::WideSystemProc(handle_), handle_);
      return;
    case WM_SETFOCUS:
      if (!IsInnerWindow(reinterpret_cast<HWND>(message.WParam))) onEnter_(this);
      break;
    case WM_KILLFOCUS:
      if (!IsInnerWindow(reinterpret_cast<HWND>(message.WParam))) onExit_(this);
      break;
    case CM_DIALOGKEY:
    case CM_DIALOGCHAR:
      return;  // not taken: Result stays 0
    case WM_COMMAND:
    case WM_HSCROLL:
    case WM_VSCROLL:
    case WM_NOTIFY:
    case WM_DRAWITEM:
    case WM_CTLCOLORMSGBOX:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC: {
      // A child's notification goes back to the child.
      HWND from = message.Msg == WM_NOTIFY     ? reinterpret_cast<NMHDR*>(message.LParam)->hwndFrom
                  : message.Msg == WM_DRAWITEM ? reinterpret_cast<DRAWITEMSTRUCT*>(message.LParam)->hwndItem
                                               : reinterpret_cast<HWND>(message.LParam);
      if (TWinControl* child = from && from != handle_ ? FindControl(from) : nullptr) {
        message.Result = child->Perform(CN_BASE + message.Msg, message.WParam, message.LParam);
        return;
      }
      break;
    }
    default:
      // The other notifications a parent passed back.
      if (message.Msg >= CN_BASE && message.Msg < CN_BASE + WM_USER) {
        Notified(message);
        return;
      }
      break;
  }
  TControl::WndProc(message);
}

void TWinControl::DefaultHandler(TMessage& message) {
  if (handle_)
    message.Result = CallWindowProcA(defWndProc_ ? defWndProc_ : &DefWindowProcA, handle_, message.Msg, message.WParam,
                                     message.LParam);
}

AnsiString TWinControl::GetText() const {
  if (!handle_) return TControl::GetText();
  const int length = GetWindowTextLengthA(handle_);
  std::string text(static_cast<size_t>(length) + 1, '\0');
  text.resize(static_cast<size_t>(GetWindowTextA(handle_, text.data(), length + 1)));
  return AnsiString(text);
}

void TWinControl::SetText(const AnsiString& value) {
  TControl::SetText(value);
  if (handle_) SetWindowTextA(handle_, value.c_str());
}

HBRUSH TWinControl::BackgroundBrush() const {
  const Graphics::TColor color = GetColor();
  if (color < 0 && brush_->GetStyle() == Graphics::bsSolid) return GetSysColorBrush(color & 0xFF);
  return brush_->GetHandle();
}

TControl* TWinControl::ControlAtPos(const MyPoint& p) const {
  for (auto it = controls_.rbegin(); it != controls_.rend(); ++it) {
    TControl* c = *it;
    if (dynamic_cast<TGraphicControl*>(c) && c->visible_ && c->GetEnabled() && p.x >= c->left_ &&
        p.x < c->left_ + c->width_ && p.y >= c->top_ && p.y < c->top_ + c->height_)
      return c;
  }
  return nullptr;
}

bool TWinControl::HasGraphicControls() const {
  return std::any_of(controls_.begin(), controls_.end(),
                     [](const TControl* c) { return dynamic_cast<const TGraphicControl*>(c) != nullptr; });
}

void TWinControl::PaintControls(HDC dc, const RECT& rect) {
  for (TControl* c : controls_) {
    auto* g = dynamic_cast<TGraphicControl*>(c);
    RECT area{c->left_, c->top_, c->left_ + c->width_, c->top_ + c->height_}, common;
    if (!g || !g->visible_ || !IntersectRect(&common, &area, &rect)) continue;
    const int saved = SaveDC(dc);
    IntersectClipRect(dc, area.left, area.top, area.right, area.bottom);
    SetViewportOrgEx(dc, area.left, area.top, nullptr);
    g->Paint(dc);
    RestoreDC(dc, saved);
  }
}

// ---- Inner windows ----

namespace {

const char kInnerOwner[] = "VelkinInnerOwner";
const char kInnerProc[] = "VelkinInnerProc";

// The wide procedure of window's class where proc is the class's 8-bit one
// (the system may hand that out itself, which reads a character as one
// byte whichever way it is called); else proc.
WNDPROC WideClassProc(HWND window, WNDPROC proc) {
  wchar_t name[256];
  WNDCLASSW wide{};
  WNDCLASSA ansi{};
  char nameA[256];
  const auto instance = reinterpret_cast<HINSTANCE>(GetWindowLongPtrW(window, GWLP_HINSTANCE));
  if (GetClassNameW(window, name, 256) && GetClassNameA(window, nameA, 256) && GetClassInfoA(instance, nameA, &ansi) &&
      ansi.lpfnWndProc == proc && GetClassInfoW(instance, name, &wide))
    return wide.lpfnWndProc;
  return proc;
}

}  // namespace

bool TWinControl::IsInnerWindow(HWND window) const {
  return handle_ && window && IsChild(handle_, window) && !FindControl(window);
}

void TWinControl::RouteInnerWindow(HWND inner) {
  if (!inner || GetPropA(inner, kInnerOwner)) return;
  SetPropA(inner, kInnerOwner, this);
  SetPropA(inner, kInnerProc,
           reinterpret_cast<HANDLE>(SetWindowLongPtrA(inner, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&InnerWndProc))));
}

// Focus moving between the control and its inner windows stays inside it:
// only focus coming from or going to elsewhere is an enter or an exit.
LRESULT CALLBACK TWinControl::InnerWndProc(HWND window, UINT msg, WPARAM wParam, LPARAM lParam) {
  auto* owner = static_cast<TWinControl*>(GetPropA(window, kInnerOwner));
  const auto proc = reinterpret_cast<WNDPROC>(GetPropA(window, kInnerProc));
  const auto other = reinterpret_cast<HWND>(wParam);
  const bool outside = other != owner->handle_ && !owner->IsInnerWindow(other);
  switch (msg) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
    case WM_KEYUP:
    case WM_SYSKEYUP:
    case WM_CHAR:
    case WM_SYSCHAR: {
      TMessage message{msg, wParam, lParam, 0};
      if (owner->HandleKey(message)) return 0;
      wParam = message.WParam;
      break;
    }
    case WM_UNICHAR:
    case CM_SYSUNICHAR: {
      TMessage message{msg, wParam, lParam, 0};
      owner->TypedChar(message, WideClassProc(window, proc), window);
      return message.Result;
    }
    case WM_SETFOCUS:
      if (outside) owner->onEnter_(owner);
      break;
    case WM_KILLFOCUS:
      if (outside) owner->onExit_(owner);
      break;
    case WM_NCDESTROY:
      SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(proc));
      RemovePropA(window, kInnerOwner);
      RemovePropA(window, kInnerProc);
      break;
  }
  return CallWindowProcA(proc, window, msg, wParam, lParam);
}

TWinControl* TWinControl::FindControl(HWND window) { return WindowProcAccess::ControlOf(window); }

bool TWinControl::CanFocus() const {
  for (const TWinControl* c = this; c; c = c->GetParent())
    if (!c->GetVisible() || !c->GetEnabled()) return false;
  return true;
}

bool TWinControl::Focused() const { return handle_ && GetFocus() == handle_; }

void TWinControl::SetFocus() {
  if (HWND h = GetHandle()) ::SetFocus(h);
}

void TWinControl::SetTabStop(bool value) {
  tabStop_ = value;
  if (handle_) {
    const LONG style = GetWindowLongA(handle_, GWL_STYLE);
    SetWindowLongA(handle_, GWL_STYLE, value ? style | WS_TABSTOP : style & ~WS_TABSTOP);
  }
}

int TWinControl::GetTabOrder() const { return GetParent() ? tabOrder_ : -1; }

void TWinControl::SetTabOrder(int value) {
  TWinControl* parent = GetParent();
  if (!parent) return;
  auto& list = parent->tabList_;
  value = std::clamp(value, 0, static_cast<int>(list.size()) - 1);
  const int from = tabOrder_;
  if (value == from) return;
  list.erase(list.begin() + from);
  list.insert(list.begin() + value, this);
  for (int i = std::min(from, value); i <= std::max(from, value); ++i) list[static_cast<size_t>(i)]->tabOrder_ = i;
}

// Every tab stop inside, depth first in tab order: a container's own stops
// follow it.
void TWinControl::CollectTabStops(std::vector<TWinControl*>& list) const {
  for (TWinControl* c : tabList_) {
    if (c->GetTabStop()) list.push_back(c);
    c->CollectTabStops(list);
  }
}

TWinControl* TWinControl::FindNextControl(TWinControl* current, bool forward) const {
  std::vector<TWinControl*> stops;
  CollectTabStops(stops);
  stops.erase(std::remove_if(stops.begin(), stops.end(), [](TWinControl* c) { return !c->CanFocus(); }), stops.end());
  if (stops.empty()) return nullptr;
  auto it = std::find(stops.begin(), stops.end(), current);
  if (it == stops.end()) return forward ? stops.front() : stops.back();
  if (forward) return ++it == stops.end() ? stops.front() : *it;
  return it == stops.begin() ? stops.back() : *--it;
}

void TWinControl::SelectNext(TWinControl* current, bool forward) {
  if (TWinControl* next = FindNextControl(current, forward)) next->SetFocus();
}

TWinControl* TWinControl::TopLevel() {
  TWinControl* top = this;
  while (top->GetParent()) top = top->GetParent();
  return top;
}

// Runs the event (a member of TWinControl) of the previewing top-level
// control, then the control's own, until one of them zeroes the key.
template <class Event, class Key, class... Rest>
bool TWinControl::RunKeyEvent(Event TWinControl::*event, Key& key, Rest... rest) {
  TWinControl* top = TopLevel();
  if (top != this && top->WantsKeyPreview()) {
    (top->*event)(top, key, rest...);
    if (key == 0) return false;
  }
  (this->*event)(this, key, rest...);
  return key != 0;
}

bool TWinControl::DoKeyDown(WORD& key, TShiftState shift) { return RunKeyEvent(&TWinControl::onKeyDown_, key, shift); }
bool TWinControl::DoKeyUp(WORD& key, TShiftState shift) { return RunKeyEvent(&TWinControl::onKeyUp_, key, shift); }
bool TWinControl::DoKeyPress(char& key) { return RunKeyEvent(&TWinControl::onKeyPress_, key); }

// The key messages: the key events first; then a dialog key that the control
// does not want goes to its top-level control. True when the message is done
// with (swallowed or used), so the window must not see it.
bool TWinControl::HandleKey(TMessage& message) {
  switch (message.Msg) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN: {
      swallowChar_ = false;
      auto key = static_cast<WORD>(message.WParam);
      if (!DoKeyDown(key, KeyboardShiftState())) return swallowChar_ = true;
      message.WParam = key;
      if (key == VK_TAB || key == VK_RETURN || key == VK_ESCAPE) {
        MSG msg{handle_, message.Msg, message.WParam, message.LParam, 0, {}};
        const LRESULT code = Perform(WM_GETDLGCODE, message.WParam, reinterpret_cast<LPARAM>(&msg));
        // Tab is kept only by a control that asks for it by name (the bit of
        // "all keys" is also the one of "this message").
        const bool wanted = (code & (key == VK_TAB ? DLGC_WANTTAB : DLGC_WANTALLKEYS)) != 0;
        if (!wanted) {
          TMessage dialogKey{CM_DIALOGKEY, key, message.LParam, 0};
          TopLevel()->DialogKey(dialogKey);
          if (dialogKey.Result) return swallowChar_ = true;
        }
      }
      return false;
    }
    case WM_KEYUP:
    case WM_SYSKEYUP: {
      auto key = static_cast<WORD>(message.WParam);
      if (!DoKeyUp(key, KeyboardShiftState())) return true;
      message.WParam = key;
      return false;
    }
    case WM_SYSCHAR: {
      // Alt+letter: offered to every control of the form as a code point;
      // one whose mnemonic it is takes it.
      const char byte = static_cast<char>(message.WParam);
      const std::wstring letter = Graphics::WideText(&byte, 1);
      TMessage dialogChar{CM_DIALOGCHAR, letter.size() == 1 ? letter[0] : message.WParam, message.LParam, 0};
      return TopLevel()->Broadcast(dialogChar);
    }
    case WM_CHAR: {
      if (swallowChar_) {
        swallowChar_ = false;
        return true;
      }
      auto key = static_cast<char>(message.WParam);
      if (!DoKeyPress(key)) return true;
      message.WParam = static_cast<unsigned char>(key);
      return false;
    }
    default:
      return false;
  }
}

// A character whole, in a UTF-8 program (see DispatchTaken): WM_UNICHAR runs
// the key press event for each byte of it in the code page, as a double-byte
// code page's lead and trail come, and any of them zeroed drops it; then the
// window's procedure gets it as UTF-16. CM_SYSUNICHAR is offered as a
// mnemonic first, as WM_SYSCHAR is.
void TWinControl::TypedChar(TMessage& message, WNDPROC proc, HWND window) {
  if (message.Msg == WM_UNICHAR && message.WParam == UNICODE_NOCHAR) {
    message.Result = TRUE;  // this window takes them
    return;
  }
  const auto code = static_cast<unsigned>(message.WParam);
  const std::wstring units = CodePointText(code);
  if (units.empty()) return;
  UINT kind = WM_CHAR;
  if (message.Msg == CM_SYSUNICHAR) {
    kind = WM_SYSCHAR;
    TMessage dialogChar{CM_DIALOGCHAR, code, message.LParam, 0};
    if (TopLevel()->Broadcast(dialogChar)) return;
  } else {
    if (swallowChar_) {
      swallowChar_ = false;
      return;
    }
    char bytes[8];
    const int n = WideCharToMultiByte(CP_ACP, 0, units.data(), static_cast<int>(units.size()), bytes, sizeof bytes,
                                      nullptr, nullptr);
    for (int i = 0; i < n; ++i) {
      char key = bytes[i];
      if (!DoKeyPress(key)) return;
    }
  }
  // Called wide: an 8-bit procedure takes the character as one byte.
  for (const wchar_t unit : units) CallWindowProcW(proc, window, kind, unit, message.LParam);
}

void TWinControl::DialogKey(TMessage& message) {
  const auto key = static_cast<WORD>(message.WParam);
  if (key == VK_TAB) {
    TWinControl* focused = FindControl(GetFocus());
    SelectNext(focused, !KeyboardShiftState().Contains(ssShift));
    message.Result = 1;
    return;
  }
  Broadcast(message);
}

bool TWinControl::Broadcast(TMessage& message) {
  // A copy: the control that takes the key may change the list (close a form).
  const std::vector<TControl*> children = controls_;
  for (TControl* c : children) {
    if (c->Perform(message.Msg, message.WParam, message.LParam) != 0) {
      message.Result = 1;
      return true;
    }
    if (auto* w = c->AsWinControl(); w && w->Broadcast(message)) return true;
  }
  return false;
}

void TWinControl::Notified(TMessage&) {}

// The paint context goes back to the system and the canvas lets go of it
// however paint ends.
void TWinControl::PaintOnCanvas(TMessage& message, Graphics::TCanvas& canvas, System::TClosure<void()> paint) {
  const HDC given = reinterpret_cast<HDC>(message.WParam);
  std::optional<OwnedPaintDC> painting;
  if (!given) painting.emplace(GetHandle());
  const HDC dc = given ? given : painting->get();
  struct Holding {
    Graphics::TCanvas& canvas;
    ~Holding() { canvas.SetHandle(nullptr); }  // puts back what the canvas selected
  } holding{canvas};
  canvas.SetHandle(dc);
  canvas.GetFont()->Assign(GetFont());
  canvas.GetBrush()->SetColor(GetColor());
  paint();
  canvas.SetHandle(nullptr);
  PaintControls(dc, given ? RECT{0, 0, GetWidth(), GetHeight()} : painting->area());
}

}  // namespace Controls
