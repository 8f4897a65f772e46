#include "platform/vcl/controls.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <map>
#include <optional>
#include <string>

#include "platform/ostrel/dc_changer.h"
#include "platform/ostrel/oslib.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/typinfo.h"

namespace Controls {

VCL_COMPONENT_IMPL(TControl, Classes::TComponent, VCL_PROPERTY(Left), VCL_PROPERTY(Top), VCL_PROPERTY(Width),
                   VCL_PROPERTY(Height), VCL_PROPERTY(Align, alNone), VCL_PROPERTY(Visible, true),
                   VCL_PROPERTY(Enabled, true), VCL_PROPERTY(Hint), VCL_PROPERTY_STORED(ShowHint, IsShowHintStored),
                   VCL_PROPERTY(ParentShowHint, true), VCL_PROPERTY_STORED(Color, IsColorStored, Graphics::clBtnFace),
                   VCL_PROPERTY(ParentColor, true), VCL_PROPERTY_STORED(Font, IsFontStored),
                   VCL_PROPERTY(ParentFont, true), VCL_PROPERTY(OnClick), VCL_PROPERTY(OnDblClick),
                   VCL_PROPERTY(OnMouseDown), VCL_PROPERTY(OnMouseUp), VCL_PROPERTY(OnMouseMove))
VCL_COMPONENT_IMPL(TWinControl, TControl, VCL_PROPERTY(TabStop, false), VCL_PROPERTY(TabOrder), VCL_PROPERTY(OnEnter),
                   VCL_PROPERTY(OnExit), VCL_PROPERTY(OnKeyDown), VCL_PROPERTY(OnKeyUp), VCL_PROPERTY(OnKeyPress))
VCL_CLASS_IMPL(TGraphicControl, TControl)
VCL_COMPONENT_IMPL(TCustomControl, TWinControl)

namespace {

HINSTANCE ThisModule() {
  static const HINSTANCE module = static_cast<HINSTANCE>(ModuleOf(reinterpret_cast<const void*>(&ThisModule)));
  return module;
}

std::atomic<TWindowExceptionHandler> exceptionHandler{nullptr};

}  // namespace

HFONT MessageFont() {
  static const OwnedFont font = [] {
    NONCLIENTMETRICSA metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    // Texts drawn in it are 8-bit in the process's code page, whatever the
    // system's own charset for the font is.
    metrics.lfMessageFont.lfCharSet = DEFAULT_CHARSET;
    return OwnedFont(CreateFontIndirectA(&metrics.lfMessageFont));
  }();
  return font.get();
}

namespace {

void ShowException(std::exception_ptr error) {
  std::string text = "Unknown error";
  try {
    std::rethrow_exception(error);
  } catch (const std::exception& e) {
    text = e.what();
  } catch (...) {
  }
  MessageBoxA(nullptr, text.c_str(), nullptr, MB_OK | MB_ICONERROR | MB_TASKMODAL);
}

}  // namespace

TWindowExceptionHandler GetWindowExceptionHandler() { return exceptionHandler.load(); }
void SetWindowExceptionHandler(TWindowExceptionHandler handler) { exceptionHandler.store(handler); }

bool IsAccel(unsigned key, const AnsiString& caption) {
  const std::string& s = caption.str();
  for (size_t i = 0; i + 1 < s.size(); ++i) {
    if (s[i] != '&') continue;
    if (s[i + 1] == '&') {
      ++i;
      continue;
    }
    return CharUpperA(reinterpret_cast<LPSTR>(static_cast<uintptr_t>(static_cast<unsigned char>(s[i + 1])))) ==
           CharUpperA(reinterpret_cast<LPSTR>(static_cast<uintptr_t>(key & 0xFF)));
  }
  return false;
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
// Plain pointers: thread-local objects with destructors are not safe in a DLL.
struct DispatchFrame {
  TWinControl* control;
  DispatchFrame* next;
};
thread_local DispatchFrame* dispatchTop = nullptr;
thread_local TWinControl* deferredTop = nullptr;

bool InDispatch(const TControl* tree) {
  for (const DispatchFrame* f = dispatchTop; f; f = f->next)
    for (const TControl* c = f->control; c; c = c->GetParent())
      if (c == tree) return true;
  return false;
}

// True while an owner or parent of control, however far up, is being
// destroyed: that destruction frees control too.
bool GoesWithAnother(const TControl* control) {
  const auto destroying = [](const Classes::TComponent* c) {
    return c && c->GetComponentState().Contains(Classes::csDestroying);
  };
  for (const TControl* c = control; c; c = c->GetParent())
    if (destroying(c->GetOwner()) || destroying(c->GetParent())) return true;
  return false;
}

// Routes the window's messages to its control. The control pointer lives in
// the last extra bytes of the window (after those of a system class the
// control's class is built on), so GWLP_USERDATA stays free for users.
struct WindowProcAccess {
  static int Slot(HWND wnd) { return static_cast<int>(GetClassLongPtrA(wnd, GCL_CBWNDEXTRA)) - sizeof(LONG_PTR); }

  // The system procedure of each class built on one, by class atom.
  static std::map<ATOM, WNDPROC>& SystemProcs() {
    static std::map<ATOM, WNDPROC> procs;
    return procs;
  }
  static WNDPROC DefaultProc(HWND wnd) {
    auto& procs = SystemProcs();
    auto it = procs.find(static_cast<ATOM>(GetClassWord(wnd, GCW_ATOM)));
    return it == procs.end() ? &DefWindowProcA : it->second;
  }

  // Marks control's window procedure as running while it lives; at its end
  // the controls whose delete waited for it are destroyed. A delete may run
  // procedures of its own, so the list is walked afresh after each.
  struct Dispatching {
    DispatchFrame frame;
    explicit Dispatching(TWinControl* control) : frame{control, dispatchTop} { dispatchTop = &frame; }
    ~Dispatching() {
      dispatchTop = frame.next;
      for (bool again = true; again;) {
        again = false;
        for (TWinControl** link = &deferredTop; *link; link = &(*link)->nextDeferred_) {
          TWinControl* waiting = *link;
          if (InDispatch(waiting) || GoesWithAnother(waiting)) continue;
          *link = waiting->nextDeferred_;
          waiting->deferred_ = false;
          delete waiting;
          again = true;
          break;
        }
      }
    }
    Dispatching(const Dispatching&) = delete;
    Dispatching& operator=(const Dispatching&) = delete;
  };

  static LRESULT CALLBACK Proc(HWND wnd, UINT msg, WPARAM wParam, LPARAM lParam) {
    auto* control = reinterpret_cast<TWinControl*>(GetWindowLongPtrA(wnd, Slot(wnd)));
    if (msg == WM_NCCREATE) {
      control = static_cast<TWinControl*>(reinterpret_cast<CREATESTRUCTA*>(lParam)->lpCreateParams);
      SetWindowLongPtrA(wnd, Slot(wnd), reinterpret_cast<LONG_PTR>(control));
      if (control) control->handle_ = wnd;
    }
    if (!control) return CallWindowProcA(DefaultProc(wnd), wnd, msg, wParam, lParam);
    const Dispatching dispatching(control);
    TMessage m{msg, wParam, lParam, 0};
    try {
      control->WndProc(m);
    } catch (...) {
      if (TWindowExceptionHandler handler = exceptionHandler.load())
        handler(std::current_exception());
      else
        ShowException(std::current_exception());
    }
    if (msg == WM_NCDESTROY) {
      SetWindowLongPtrA(wnd, Slot(wnd), 0);
      if (control->handle_ == wnd) control->handle_ = nullptr;
    }
    return m.Result;
  }

  // Registers the class under this name unless it is registered with our
  // procedure already; a stale registration (left by an unloaded copy of this
  // module) is replaced. A class built on a system class takes the system
  // class's style, cursor, background and extra bytes.
  static bool Register(const TCreateParams& params, WNDPROC& systemProc) {
    WNDCLASSA system{};
    if (params.SystemClass && !GetClassInfoA(nullptr, params.SystemClass, &system)) return false;
    systemProc = params.SystemClass ? system.lpfnWndProc : &DefWindowProcA;
    WNDCLASSA existing{};
    if (GetClassInfoA(ThisModule(), params.WinClassName, &existing)) {
      if (existing.lpfnWndProc == &Proc) return true;
      UnregisterClassA(params.WinClassName, ThisModule());
    }
    WNDCLASSA wc{};
    wc.style = params.SystemClass ? system.style & ~(CS_GLOBALCLASS | CS_PARENTDC) : params.ClassStyle;
    wc.lpfnWndProc = &Proc;
    wc.cbWndExtra = (params.SystemClass ? system.cbWndExtra : 0) + sizeof(LONG_PTR);
    wc.hInstance = ThisModule();
    wc.hCursor = params.SystemClass ? system.hCursor : LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
    wc.hbrBackground = params.SystemClass ? system.hbrBackground : params.Background;
    wc.lpszClassName = params.WinClassName;
    const ATOM atom = RegisterClassA(&wc);
    if (atom) SystemProcs()[atom] = systemProc;
    return atom != 0;
  }
};

// ---- TControl ----

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
  if (parent_) parent_->RemoveControl(this);
}

void TControl::UpdateBoundsFields(int left, int top, int width, int height) {
  if (left == left_ && top == top_ && width == width_ && height == height_) return;
  const bool resized = width != width_ || height != height_;
  left_ = left;
  top_ = top;
  width_ = width;
  height_ = height;
  Resize();
  if (parent_ && align_ != alNone) parent_->Realign();
  if (parent_) parent_->ChildrenChanged();
  if (auto* w = dynamic_cast<TWinControl*>(this); w && resized) w->Realign();
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
  if (!parent) return;
  parent->InsertControl(this);
  Perform(CM_PARENTCOLORCHANGED, 0, 0);
  Perform(CM_PARENTFONTCHANGED, 0, 0);
}

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
  if (auto* w = dynamic_cast<TWinControl*>(this); w && w->handle_)
    SetWindowPos(w->handle_, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  Invalidate();
}

void TControl::SendToBack() {
  if (parent_) {
    auto& list = parent_->controls_;
    list.erase(std::find(list.begin(), list.end(), this));
    list.insert(list.begin(), this);
  }
  if (auto* w = dynamic_cast<TWinControl*>(this); w && w->handle_)
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
  align_ = value;
  if (parent_) parent_->Realign();
}

void TControl::SetVisible(bool value) {
  if (value == visible_) return;
  visible_ = value;
  VisibleChanged();
  if (parent_ && align_ != alNone) parent_->Realign();
  if (parent_) parent_->ChildrenChanged();
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

// ---- TWinControl ----

TWinControl::TWinControl(Classes::TComponent* owner) : TControl(owner), brush_(std::make_unique<Graphics::TBrush>()) {
  brush_->SetColor(GetColor());
}

bool TWinControl::DestroyLater() {
  // Freed with an owner or parent, even while it waits: there is no later
  // for it (BeforeDestruction takes it off the waiting list).
  if (GoesWithAnother(this)) return false;
  if (deferred_) return true;
  if (!InDispatch(this)) return false;
  deferred_ = true;
  nextDeferred_ = deferredTop;
  deferredTop = this;
  SetVisible(false);
  return true;
}

void TWinControl::BeforeDestruction() {
  if (deferred_)  // destroyed another way meanwhile: no longer waiting
    for (TWinControl** link = &deferredTop; *link; link = &(*link)->nextDeferred_)
      if (*link == this) {
        *link = nextDeferred_;
        deferred_ = false;
        break;
      }
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
  control->alignOrder_ = ++alignCounter_;
  if (control->align_ != alNone) Realign();
  if (auto* w = dynamic_cast<TWinControl*>(control)) tabList_.push_back(w);
  control->parent_ = this;
  // A window cannot follow its control to another parent; it is made again
  // on demand inside the new one.
  if (auto* w = dynamic_cast<TWinControl*>(control)) w->DestroyHandle();
  control->Invalidate();
  ChildrenChanged();
}

void TWinControl::RemoveControl(TControl* control) {
  auto it = std::find(controls_.begin(), controls_.end(), control);
  if (it == controls_.end()) return;
  control->Invalidate();
  if (auto* w = dynamic_cast<TWinControl*>(control)) w->DestroyHandle();
  controls_.erase(it);
  if (captureControl_ == control) captureControl_ = nullptr;
  tabList_.erase(std::remove(tabList_.begin(), tabList_.end(), control), tabList_.end());
  control->parent_ = nullptr;
  if (control->align_ != alNone) Realign();
  if (!GetComponentState().Contains(Classes::csDestroying)) ChildrenChanged();
}

void TWinControl::ChangeScale(int m, int d) {
  TControl::ChangeScale(m, d);
  const std::vector<TControl*> children = controls_;
  for (TControl* c : children) c->ChangeScale(m, d);
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

void TWinControl::Realign() {
  if (aligning_ || GetComponentState().Contains(Classes::csDestroying)) return;
  ++aligning_;
  MyRect r = GetClientRect();
  // A copy, in the order the controls came in (front-to-back order is
  // another matter): a control freed by a handler while the others move is
  // skipped.
  std::vector<TControl*> children = controls_;
  std::sort(children.begin(), children.end(),
            [](const TControl* a, const TControl* b) { return a->alignOrder_ < b->alignOrder_; });
  for (TAlign kind : {alTop, alBottom, alLeft, alRight, alClient})
    for (TControl* c : children) {
      if (!ContainsControl(c) || c->align_ != kind || !c->visible_) continue;
      const int w = c->width_, h = c->height_;
      switch (kind) {
        case alTop:
          c->SetBounds(r.left, r.top, r.Width(), h);
          r.top += h;
          break;
        case alBottom:
          c->SetBounds(r.left, r.bottom - h, r.Width(), h);
          r.bottom -= h;
          break;
        case alLeft:
          c->SetBounds(r.left, r.top, w, r.Height());
          r.left += w;
          break;
        case alRight:
          c->SetBounds(r.right - w, r.top, w, r.Height());
          r.right -= w;
          break;
        default:
          c->SetBounds(r.left, r.top, r.Width(), r.Height());
          break;
      }
    }
  --aligning_;
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
                             params.Width, params.Height, params.WndParent, nullptr, ThisModule(), this);
  handle_ = wnd;
  if (wnd) SendMessageA(wnd, WM_SETFONT, reinterpret_cast<WPARAM>(FontHandle()), FALSE);
  // The windows of the controls inside come with it, so that it shows whole.
  if (wnd)
    for (TControl* c : std::vector<TControl*>(controls_))
      if (auto* w = dynamic_cast<TWinControl*>(c)) w->GetHandle();
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
  for (TControl* c : std::vector<TControl*>(controls_))
    if (ContainsControl(c)) c->Perform(msg, 0, 0);
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
      // bar or a scroll bar came or went.
      Realign();
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

// ---- TGraphicControl ----

TGraphicControl::TGraphicControl(Classes::TComponent* owner) : TControl(owner) {}

void TGraphicControl::SetText(const AnsiString& value) {
  if (value == GetText()) return;
  TControl::SetText(value);
  Invalidate();
}

// ---- Inner windows ----

namespace {

const char kInnerOwner[] = "VelkinInnerOwner";
const char kInnerProc[] = "VelkinInnerProc";

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

TWinControl* TWinControl::FindControl(HWND window) {
  if (!window || !IsWindow(window) ||
      GetWindowLongPtrA(window, GWLP_WNDPROC) != reinterpret_cast<LONG_PTR>(&WindowProcAccess::Proc))
    return nullptr;
  return reinterpret_cast<TWinControl*>(GetWindowLongPtrA(window, WindowProcAccess::Slot(window)));
}

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

int TWinControl::GetTabOrder() const {
  if (!GetParent()) return -1;
  const auto& list = GetParent()->tabList_;
  return static_cast<int>(std::find(list.begin(), list.end(), this) - list.begin());
}

void TWinControl::SetTabOrder(int value) {
  if (!GetParent()) return;
  auto& list = GetParent()->tabList_;
  list.erase(std::remove(list.begin(), list.end(), this), list.end());
  value = std::clamp(value, 0, static_cast<int>(list.size()));
  list.insert(list.begin() + value, this);
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
      // Alt+letter: offered to every control of the form; one whose
      // mnemonic it is takes it.
      TMessage dialogChar{CM_DIALOGCHAR, message.WParam, message.LParam, 0};
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
    if (auto* w = dynamic_cast<TWinControl*>(c); w && w->Broadcast(message)) return true;
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
