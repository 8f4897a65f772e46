#pragma once
// The framework's one window procedure and the per-thread bookkeeping of
// running procedures and deferred deletes. Private to the Controls unit.
#include <windows.h>

#include "platform/vcl/controls/win_control.h"

namespace Controls {

/// Routes a window's messages to its control. The control pointer lives in
/// the last extra bytes of the window (after those of a system class the
/// control's class is built on), so GWLP_USERDATA stays free for users.
struct WindowProcAccess {
  static LRESULT CALLBACK Proc(HWND wnd, UINT msg, WPARAM wParam, LPARAM lParam);
  /// The control stored in wnd (made by Proc's class), or null.
  static TWinControl* ControlOf(HWND wnd);
  /// Registers params' class with Proc unless done already; systemProc gets
  /// the procedure the control's default handling calls.
  static bool Register(const TCreateParams& params, WNDPROC& systemProc);
  /// The wide procedure of the system class wnd's class is built on
  /// (DefWindowProcW for none), for what only UTF-16 carries whole.
  static WNDPROC WideSystemProc(HWND wnd);
  /// The module whose classes and windows these are.
  static HINSTANCE Module();
  /// Puts control on this thread's list of controls whose delete waits for
  /// a running window procedure, or takes it off.
  static void Defer(TWinControl* control);
  static void Undefer(TWinControl* control);
  /// Deletes the waiting controls whose procedures are no longer running.
  static void DeleteWaiting();
};

/// Whether the window procedure of tree, or of a control inside it, is
/// running on this thread.
bool InDispatch(const TControl* tree);
/// True while an owner or parent of control, however far up, is being
/// destroyed: that destruction frees control too.
bool GoesWithAnother(const TControl* control);

}  // namespace Controls
