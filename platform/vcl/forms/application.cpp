#include "platform/vcl/forms/application.h"

#include <commctrl.h>
#include <windowsx.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "platform/vcl/controls/message_loop.h"
#include "platform/vcl/core/thread.h"
#include "platform/vcl/graphics/screen_density.h"

namespace Forms {

VCL_COMPONENT_IMPL(TApplication, Classes::TComponent)
VCL_COMPONENT_IMPL(TScreen, Classes::TComponent)

namespace {
TApplication applicationInstance(nullptr);
TScreen screenInstance(nullptr);

void ApplicationHandlesIt(std::exception_ptr error) { Application->HandleException(error); }

}  // namespace

TApplication* Application = &applicationInstance;
TScreen* Screen = &screenInstance;

// ---- TApplication ----

TApplication::TApplication(Classes::TComponent* owner) : TComponent(owner) {}

TApplication::~TApplication() {
  if (Controls::GetWindowExceptionHandler() == &ApplicationHandlesIt) Controls::SetWindowExceptionHandler(nullptr);
}

void TApplication::Initialize() {
  GetHandle();
  Controls::SetWindowExceptionHandler(&ApplicationHandlesIt);
  Classes::CheckSynchronize(0);  // the main thread's side of thread calls is ready
}

HWND TApplication::GetHandle() {
  if (!handle_) {
    WNDCLASSA wc{};
    wc.lpfnWndProc = &DefWindowProcA;
    wc.hInstance = GetModuleHandleA(nullptr);
    wc.lpszClassName = "TApplication";
    RegisterClassA(&wc);
    handle_.reset(CreateWindowExA(0, wc.lpszClassName, title_.c_str(), WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                                  wc.hInstance, nullptr));
  }
  return handle_.get();
}

void TApplication::SetTitle(const AnsiString& value) {
  title_ = value;
  if (handle_) SetWindowTextA(handle_.get(), title_.c_str());
}

void TApplication::Notification(Classes::TComponent* component, Classes::TOperation operation) {
  TComponent::Notification(component, operation);
  if (operation == Classes::opRemove && component == mainForm_) mainForm_ = nullptr;
  if (operation == Classes::opRemove && component == hintControl_) {
    HideHint();
    hintControl_ = nullptr;
  }
}

// ---- hints ----

namespace {

// The control under the mouse with a hint to show: a windowless child of the
// window's control where the mouse is, else that control, else the nearest
// parent with a hint.
Controls::TControl* HintControlAt(HWND wnd, POINT screen) {
  Controls::TControl* c = Controls::TWinControl::FindControl(wnd);
  if (auto* w = dynamic_cast<Controls::TWinControl*>(c))
    if (Controls::TControl* inner = w->ControlAtPos(w->ScreenToClient({screen.x, screen.y}))) c = inner;
  while (c && c->GetHint().IsEmpty()) c = c->GetParent();
  return c && c->GetShowHint() ? c : nullptr;
}

bool MouseOver(Controls::TControl* c) {
  POINT p;
  GetCursorPos(&p);
  const MyPoint local = c->ScreenToClient({p.x, p.y});
  return local.x >= 0 && local.y >= 0 && local.x < c->GetWidth() && local.y < c->GetHeight();
}

}  // namespace

void TApplication::SetShowHint(bool value) {
  showHint_ = value;
  if (!value) CancelHint();
}

// The loop sees every message before its window: mouse moves choose the
// control, presses and keys put the hint away.
void TApplication::HintMessage(const MSG& msg) {
  switch (msg.message) {
    case WM_MOUSEMOVE: {
      POINT p{GET_X_LPARAM(msg.lParam), GET_Y_LPARAM(msg.lParam)};
      ClientToScreen(msg.hwnd, &p);
      Controls::TControl* c = showHint_ ? HintControlAt(msg.hwnd, p) : nullptr;
      if (c == hintControl_) return;
      CancelHint();
      hintControl_ = c;
      if (!c) return;
      c->FreeNotification(this);
      hintTimer_ = SetTimer(nullptr, hintTimer_, static_cast<UINT>(hintPause_), &HintTimerProc);
      return;
    }
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
      HideHint();
      return;
    default:
      return;
  }
}

void CALLBACK TApplication::HintTimerProc(HWND, UINT, UINT_PTR, DWORD) {
  if (Application) Application->HintTimer();
}

// The pause is over: show the hint if the mouse is still there; the hide
// pause is over, or the mouse left: put it away.
void TApplication::HintTimer() {
  if (!hintControl_ || !MouseOver(hintControl_)) {
    CancelHint();
    return;
  }
  if (!shownHint_.IsEmpty()) {
    HideHint();
    return;
  }
  const AnsiString hint = hintControl_->GetHint();
  const char* bar = std::strchr(hint.c_str(), '|');
  shownHint_ = bar ? AnsiString(std::string(hint.c_str(), bar).c_str()) : hint;
  if (shownHint_.IsEmpty()) return;
  if (!hintWindow_) {
    static const bool ready = [] {
      INITCOMMONCONTROLSEX init{sizeof init, ICC_WIN95_CLASSES};
      return InitCommonControlsEx(&init) != FALSE;
    }();
    (void)ready;
    hintWindow_.reset(CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, nullptr, WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP,
                                      0, 0, 0, 0, GetHandle(), nullptr, nullptr, nullptr));
    TTTOOLINFOA tool{};
    tool.cbSize = TTTOOLINFOA_V2_SIZE;
    tool.uFlags = TTF_TRACK | TTF_ABSOLUTE;
    tool.hwnd = GetHandle();
    tool.lpszText = const_cast<char*>("");
    SendMessageA(hintWindow_.get(), TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
    SendMessageA(hintWindow_.get(), TTM_SETMAXTIPWIDTH, 0, 400);
  }
  TTTOOLINFOA tool{};
  tool.cbSize = TTTOOLINFOA_V2_SIZE;
  tool.uFlags = TTF_TRACK | TTF_ABSOLUTE;
  tool.hwnd = GetHandle();
  tool.lpszText = const_cast<char*>(shownHint_.c_str());
  SendMessageA(hintWindow_.get(), TTM_UPDATETIPTEXTA, 0, reinterpret_cast<LPARAM>(&tool));
  POINT p;
  GetCursorPos(&p);
  SendMessageA(hintWindow_.get(), TTM_TRACKPOSITION, 0, MAKELPARAM(p.x, p.y + GetSystemMetrics(SM_CYCURSOR) / 2 + 4));
  SendMessageA(hintWindow_.get(), TTM_TRACKACTIVATE, TRUE, reinterpret_cast<LPARAM>(&tool));
  hintTimer_ = SetTimer(nullptr, hintTimer_, static_cast<UINT>(hintHidePause_), &HintTimerProc);
}

// Away until the mouse comes to another control.
void TApplication::HideHint() {
  if (hintTimer_) KillTimer(nullptr, hintTimer_);
  hintTimer_ = 0;
  if (shownHint_.IsEmpty()) return;
  shownHint_ = "";
  TTTOOLINFOA tool{};
  tool.cbSize = TTTOOLINFOA_V2_SIZE;
  tool.uFlags = TTF_TRACK | TTF_ABSOLUTE;
  tool.hwnd = GetHandle();
  SendMessageA(hintWindow_.get(), TTM_TRACKACTIVATE, FALSE, reinterpret_cast<LPARAM>(&tool));
}

void TApplication::CancelHint() {
  HideHint();
  if (hintControl_) hintControl_->RemoveFreeNotification(this);
  hintControl_ = nullptr;
}

// One message: false when there was none. Exceptions of its handlers went to
// HandleException already (see the window procedure).
bool TApplication::ProcessMessage() {
  MSG msg;
  if (!Controls::TakeMessage(msg)) return false;
  if (msg.message == WM_QUIT) {
    terminated_ = true;
    return true;
  }
  HintMessage(msg);
  if (IsShortCutMessage(msg)) return true;
  Controls::DispatchTaken(msg);
  return true;
}

// A key down that is a menu shortcut of the form the key goes to runs the
// item instead of reaching the control.
bool TApplication::IsShortCutMessage(const MSG& msg) {
  if (msg.message != WM_KEYDOWN && msg.message != WM_SYSKEYDOWN) return false;
  Controls::TWinControl* control = Controls::TWinControl::FindControl(msg.hwnd);
  TCustomForm* form = control ? GetParentForm(control) : nullptr;
  if (!form) return false;
  try {
    return form->IsShortCut(static_cast<WORD>(msg.wParam), Controls::KeyboardShiftState());
  } catch (...) {
    HandleException(std::current_exception());  // not inside a window procedure: caught here
    return true;
  }
}

void TApplication::ProcessMessages() {
  while (ProcessMessage()) {
  }
  Classes::CheckSynchronize(0);
}

void TApplication::Idle() {
  bool done = true;
  try {
    onIdle_(this, done);
  } catch (...) {
    HandleException(std::current_exception());
  }
  Classes::CheckSynchronize(0);
  if (done) WaitMessage();
}

void TApplication::HandleMessage() {
  if (!ProcessMessage()) Idle();
}

void TApplication::Run() {
  // However Run ends, the request that ended it is used up.
  struct UsedUp {
    bool& terminated;
    ~UsedUp() {
      terminated = false;
      MSG quit;
      while (PeekMessageA(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) {
      }
    }
  } usedUp{terminated_};
  if (mainForm_ && !terminated_) mainForm_->Show();
  while (!terminated_) {
    try {
      HandleMessage();
    } catch (...) {
      HandleException(std::current_exception());
    }
  }
}

void TApplication::Terminate() {
  terminated_ = true;
  PostQuitMessage(0);
}

void TApplication::HandleException(std::exception_ptr error) {
  try {
    std::rethrow_exception(error);
  } catch (const Sysutils::Exception& e) {
    if (onException_)
      onException_(this, e);
    else
      ShowException(e);
  } catch (const std::exception& e) {
    const Sysutils::Exception wrapped(e.what());
    if (onException_)
      onException_(this, wrapped);
    else
      ShowException(wrapped);
  } catch (...) {
    ShowException(Sysutils::Exception("Unknown error"));
  }
}

void TApplication::ShowException(const Sysutils::Exception& e) {
  std::string text = e.Message.c_str();
  if (!text.empty() && text.back() != '.') text += '.';
  MessageBoxA(GetActiveWindow(), text.c_str(), title_.IsEmpty() ? nullptr : title_.c_str(),
              MB_OK | MB_ICONSTOP | MB_TASKMODAL);
}

// ---- TScreen ----

int TScreen::GetPixelsPerInch() const { return Graphics::ScreenPixelsPerInch(); }

TCustomForm* TScreen::GetForm(int index) const {
  if (index < 0 || index >= GetFormCount()) Classes::ListIndexError(index);
  return forms_[index];
}

TCustomForm* TScreen::GetActiveForm() const {
  HWND active = GetActiveWindow();
  for (TCustomForm* f : forms_)
    if (f->HandleAllocated() && f->GetHandle() == active) return f;
  return nullptr;
}

// ---- Task windows ----

TTaskWindowList* DisableTaskWindows(HWND keepEnabled) {
  auto* list = new TTaskWindowList;
  struct Args {
    HWND keep;
    TTaskWindowList* list;
  } args{keepEnabled, list};
  EnumThreadWindows(
      GetCurrentThreadId(),
      [](HWND w, LPARAM p) -> BOOL {
        auto* a = reinterpret_cast<Args*>(p);
        if (w != a->keep && IsWindowVisible(w) && IsWindowEnabled(w)) {
          EnableWindow(w, FALSE);
          a->list->Windows.push_back(w);
        }
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&args));
  return list;
}

void EnableTaskWindows(TTaskWindowList* list) {
  if (!list) return;
  for (HWND w : list->Windows)
    if (IsWindow(w)) EnableWindow(w, TRUE);
  delete list;
}

}  // namespace Forms
