#include "platform/vcl/application.h"

#include <algorithm>

#include "platform/vcl/thread.h"

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

void TApplication::Notification(Classes::TComponent* component, Classes::TOperation operation) {
  TComponent::Notification(component, operation);
  if (operation == Classes::opRemove && component == mainForm_) mainForm_ = nullptr;
}

// One message: false when there was none. Exceptions of its handlers went to
// HandleException already (see the window procedure).
bool TApplication::ProcessMessage() {
  MSG msg;
  if (!PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) return false;
  if (msg.message == WM_QUIT) {
    terminated_ = true;
    return true;
  }
  if (IsShortCutMessage(msg)) return true;
  TranslateMessage(&msg);
  DispatchMessageA(&msg);
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
  if (mainForm_) mainForm_->Show();
  while (!terminated_) HandleMessage();
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
