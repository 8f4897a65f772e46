#include "platform/vcl/controls.h"

#include <algorithm>
#include <cstdio>

#include "platform/ostrel/owned_handle.h"

namespace Controls {

VCL_COMPONENT_IMPL(TControl, Classes::TComponent)
VCL_COMPONENT_IMPL(TWinControl, TControl)

namespace {

HINSTANCE ThisModule() {
  static HINSTANCE module = [] {
    HMODULE m = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCSTR>(&ThisModule), &m);
    return m;
  }();
  return module;
}

}  // namespace

// Routes the window's messages to its control; the control pointer lives in
// the class's extra window bytes, so GWLP_USERDATA stays free for users.
struct WindowProcAccess {
  static LRESULT CALLBACK Proc(HWND wnd, UINT msg, WPARAM wParam, LPARAM lParam) {
    auto* control = reinterpret_cast<TWinControl*>(GetWindowLongPtrA(wnd, 0));
    if (msg == WM_NCCREATE) {
      control = static_cast<TWinControl*>(reinterpret_cast<CREATESTRUCTA*>(lParam)->lpCreateParams);
      SetWindowLongPtrA(wnd, 0, reinterpret_cast<LONG_PTR>(control));
      if (control) control->handle_ = wnd;
    }
    if (!control) return DefWindowProcA(wnd, msg, wParam, lParam);
    TMessage m{msg, wParam, lParam, 0};
    control->WndProc(m);
    if (msg == WM_NCDESTROY) {
      SetWindowLongPtrA(wnd, 0, 0);
      if (control->handle_ == wnd) control->handle_ = nullptr;
    }
    return m.Result;
  }

  // Registers the class under this name unless it is registered with our
  // procedure already; a stale registration (left by an unloaded copy of this
  // module) is replaced.
  static bool Register(const TCreateParams& params) {
    WNDCLASSA existing{};
    if (GetClassInfoA(ThisModule(), params.WinClassName, &existing)) {
      if (existing.lpfnWndProc == &Proc) return true;
      UnregisterClassA(params.WinClassName, ThisModule());
    }
    WNDCLASSA wc{};
    wc.style = params.ClassStyle;
    wc.lpfnWndProc = &Proc;
    wc.cbWndExtra = sizeof(LONG_PTR);
    wc.hInstance = ThisModule();
    wc.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
    wc.hbrBackground = params.Background;
    wc.lpszClassName = params.WinClassName;
    return RegisterClassA(&wc) != 0;
  }
};

// ---- TControl ----

TControl::TControl(Classes::TComponent* owner) : TComponent(owner) {}

TControl::~TControl() {
  if (parent_) parent_->RemoveControl(this);
}

void TControl::UpdateBoundsFields(int left, int top, int width, int height) {
  if (left == left_ && top == top_ && width == width_ && height == height_) return;
  left_ = left;
  top_ = top;
  width_ = width;
  height_ = height;
  Resize();
}

void TControl::SetBounds(int left, int top, int width, int height) {
  width = std::max(width, 0);
  height = std::max(height, 0);
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
  if (parent_) parent_->RemoveControl(this);
  if (parent) parent->InsertControl(this);
}

void TControl::SetVisible(bool value) {
  if (value == visible_) return;
  visible_ = value;
  VisibleChanged();
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

void TControl::WndProc(TMessage& message) { DefaultHandler(message); }

void TControl::DefaultHandler(TMessage&) {}

// ---- TWinControl ----

TWinControl::TWinControl(Classes::TComponent* owner) : TControl(owner) {}

void TWinControl::BeforeDestruction() {
  // Done here while derived parts still exist, so their WndProc sees the
  // window's last messages; the destructor repeats it for objects not deleted.
  // Child controls go first, then the components this one owns.
  Destroying();
  DestroyChildren();
  DestroyHandle();
  TControl::BeforeDestruction();
}

TWinControl::~TWinControl() {
  DestroyChildren();
  DestroyHandle();
}

void TWinControl::DestroyChildren() {
  while (!controls_.empty()) {
    TControl* child = controls_.back();
    RemoveControl(child);
    delete child;
  }
}

void TWinControl::InsertControl(TControl* control) {
  controls_.push_back(control);
  control->parent_ = this;
  // A window cannot follow its control to another parent; it is made again
  // on demand inside the new one.
  if (auto* w = dynamic_cast<TWinControl*>(control)) w->DestroyHandle();
  control->Invalidate();
}

void TWinControl::RemoveControl(TControl* control) {
  auto it = std::find(controls_.begin(), controls_.end(), control);
  if (it == controls_.end()) return;
  control->Invalidate();
  if (auto* w = dynamic_cast<TWinControl*>(control)) w->DestroyHandle();
  controls_.erase(it);
  control->parent_ = nullptr;
}

TControl* TWinControl::GetControl(int index) const {
  if (index < 0 || index >= GetControlCount()) return nullptr;
  return controls_[static_cast<size_t>(index)];
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
  params.Style = WS_CLIPCHILDREN;
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
  } else if (params.Style & WS_CHILD) {
    params.WndParent = parentWindow_;
  }
  if (!WindowProcAccess::Register(params)) return;
  // The procedure stores the handle at WM_NCCREATE already, so messages sent
  // during creation reach a control that knows its window.
  HWND wnd = CreateWindowExA(params.ExStyle, params.WinClassName, params.Caption, params.Style, params.X, params.Y,
                             params.Width, params.Height, params.WndParent, nullptr, ThisModule(), this);
  handle_ = wnd;
  // A top-level window is shown without taking the foreground from whoever
  // has it.
  if (wnd && !(params.Style & WS_CHILD) && GetVisible()) ShowWindow(wnd, SW_SHOWNOACTIVATE);
  // The window system may have adjusted the size (minimum sizes of top-level
  // windows); the control reports what the window really is.
  if (wnd) ReadBoundsFromWindow();
}

void TWinControl::DestroyWnd() {
  OwnedWindow::Close(handle_);  // the window procedure clears handle_ at WM_NCDESTROY
  handle_ = nullptr;
}

void TWinControl::DestroyHandle() {
  if (!handle_) return;
  for (TControl* c : controls_)
    if (auto* w = dynamic_cast<TWinControl*>(c)) w->DestroyHandle();
  DestroyWnd();
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
  width = std::max(width, 0);
  height = std::max(height, 0);
  // WM_WINDOWPOSCHANGED brings the stored bounds up to date.
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

void TWinControl::VisibleChanged() {
  if (handle_) ShowWindow(handle_, GetVisible() ? SW_SHOWNOACTIVATE : SW_HIDE);
}

void TWinControl::EnabledChanged() {
  if (handle_) EnableWindow(handle_, GetEnabled());
}

void TWinControl::WndProc(TMessage& message) {
  if (message.Msg == WM_WINDOWPOSCHANGED) {
    auto* pos = reinterpret_cast<const WINDOWPOS*>(message.LParam);
    if (!(pos->flags & SWP_NOSIZE) || !(pos->flags & SWP_NOMOVE)) ReadBoundsFromWindow();
  }
  TControl::WndProc(message);
}

void TWinControl::DefaultHandler(TMessage& message) {
  if (handle_) message.Result = DefWindowProcA(handle_, message.Msg, message.WParam, message.LParam);
}

}  // namespace Controls
