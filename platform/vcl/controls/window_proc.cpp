#include <atomic>
#include <map>
#include <string>

#include "platform/ostrel/oslib.h"
#include "platform/vcl/controls/window_proc_impl.h"
#include "platform/vcl/graphics/measuring_dc.h"

namespace Controls {

namespace {

std::atomic<TWindowExceptionHandler> exceptionHandler{nullptr};

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

// The controls whose window procedures are running on this thread, innermost
// first, and the controls whose delete waits for them (see DestroyLater).
// Plain pointers: thread-local objects with destructors are not safe in a DLL.
namespace {
struct DispatchFrame {
  TWinControl* control;
  DispatchFrame* next;
};
thread_local DispatchFrame* dispatchTop = nullptr;
thread_local TWinControl* deferredTop = nullptr;
}  // namespace

bool InDispatch(const TControl* tree) {
  for (const DispatchFrame* f = dispatchTop; f; f = f->next)
    for (const TControl* c = f->control; c; c = c->GetParent())
      if (c == tree) return true;
  return false;
}

bool GoesWithAnother(const TControl* control) {
  const auto destroying = [](const Classes::TComponent* c) {
    return c && c->GetComponentState().Contains(Classes::csDestroying);
  };
  for (const TControl* c = control; c; c = c->GetParent())
    if (destroying(c->GetOwner()) || destroying(c->GetParent())) return true;
  return false;
}

namespace {

int Slot(HWND wnd) { return static_cast<int>(GetClassLongPtrA(wnd, GCL_CBWNDEXTRA)) - sizeof(LONG_PTR); }

// The system procedures, 8-bit and wide, of each class built on one, by class atom.
struct SystemProc {
  WNDPROC ansi, wide;
};
std::map<ATOM, SystemProc>& SystemProcs() {
  static std::map<ATOM, SystemProc> procs;
  return procs;
}

const SystemProc* SystemProcOf(HWND wnd) {
  auto& procs = SystemProcs();
  auto it = procs.find(static_cast<ATOM>(GetClassWord(wnd, GCW_ATOM)));
  return it == procs.end() ? nullptr : &it->second;
}

WNDPROC DefaultProc(HWND wnd) {
  const SystemProc* proc = SystemProcOf(wnd);
  return proc ? proc->ansi : &DefWindowProcA;
}

}  // namespace

// Marks control's window procedure as running while it lives; at its end
// the controls whose delete waited for it are destroyed.
class Dispatching {
 public:
  explicit Dispatching(TWinControl* control) : frame_{control, dispatchTop} { dispatchTop = &frame_; }
  ~Dispatching() {
    dispatchTop = frame_.next;
    WindowProcAccess::DeleteWaiting();
  }
  Dispatching(const Dispatching&) = delete;
  Dispatching& operator=(const Dispatching&) = delete;

 private:
  DispatchFrame frame_;
};

HINSTANCE WindowProcAccess::Module() {
  static const HINSTANCE module = static_cast<HINSTANCE>(ModuleOf(reinterpret_cast<const void*>(&Module)));
  return module;
}

void WindowProcAccess::Defer(TWinControl* control) {
  if (control->deferred_) return;
  control->deferred_ = true;
  control->nextDeferred_ = deferredTop;
  deferredTop = control;
}

void WindowProcAccess::Undefer(TWinControl* control) {
  if (!control->deferred_) return;
  for (TWinControl** link = &deferredTop; *link; link = &(*link)->nextDeferred_)
    if (*link == control) {
      *link = control->nextDeferred_;
      break;
    }
  control->deferred_ = false;
}

// A delete may run procedures of its own, so the list is walked afresh after each.
void WindowProcAccess::DeleteWaiting() {
  for (bool again = true; again;) {
    again = false;
    for (TWinControl* waiting = deferredTop; waiting; waiting = waiting->nextDeferred_) {
      if (InDispatch(waiting) || GoesWithAnother(waiting)) continue;
      Undefer(waiting);
      delete waiting;
      again = true;
      break;
    }
  }
}

TWinControl* WindowProcAccess::ControlOf(HWND wnd) {
  if (!wnd || !IsWindow(wnd) || GetWindowLongPtrA(wnd, GWLP_WNDPROC) != reinterpret_cast<LONG_PTR>(&Proc))
    return nullptr;
  return reinterpret_cast<TWinControl*>(GetWindowLongPtrA(wnd, Slot(wnd)));
}

LRESULT CALLBACK WindowProcAccess::Proc(HWND wnd, UINT msg, WPARAM wParam, LPARAM lParam) {
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
bool WindowProcAccess::Register(const TCreateParams& params, WNDPROC& systemProc) {
  WNDCLASSA system{};
  if (params.SystemClass && !GetClassInfoA(nullptr, params.SystemClass, &system)) return false;
  systemProc = params.SystemClass ? system.lpfnWndProc : &DefWindowProcA;
  WNDCLASSA existing{};
  if (GetClassInfoA(Module(), params.WinClassName, &existing)) {
    if (existing.lpfnWndProc == &Proc) return true;
    UnregisterClassA(params.WinClassName, Module());
  }
  WNDCLASSA wc{};
  wc.style = params.SystemClass ? system.style & ~(CS_GLOBALCLASS | CS_PARENTDC) : params.ClassStyle;
  wc.lpfnWndProc = &Proc;
  wc.cbWndExtra = (params.SystemClass ? system.cbWndExtra : 0) + sizeof(LONG_PTR);
  wc.hInstance = Module();
  wc.hCursor = params.SystemClass ? system.hCursor : LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
  wc.hbrBackground = params.SystemClass ? system.hbrBackground : params.Background;
  wc.lpszClassName = params.WinClassName;
  const ATOM atom = RegisterClassA(&wc);
  if (atom) {
    // The system may hand out the 8-bit procedure itself, which takes a
    // character as one byte whichever way it is called.
    WNDCLASSW wide{};
    const std::wstring name = params.SystemClass ? Graphics::WideText(params.SystemClass, -1) : std::wstring();
    const bool found = params.SystemClass && GetClassInfoW(nullptr, name.c_str(), &wide);
    SystemProcs()[atom] = {systemProc, found ? wide.lpfnWndProc : &DefWindowProcW};
  }
  return atom != 0;
}

WNDPROC WindowProcAccess::WideSystemProc(HWND wnd) {
  const SystemProc* proc = SystemProcOf(wnd);
  return proc ? proc->wide : &DefWindowProcW;
}

}  // namespace Controls
