#include "platform/vcl/controls/message_loop.h"

#include "platform/vcl/controls/messages.h"

namespace Controls {

namespace {

bool Wide() { return GetACP() == CP_UTF8; }

// The first half of a character beyond the basic plane, waiting for the second.
thread_local wchar_t pendingHigh = 0;

// Whether window is an 8-bit window that takes characters whole (the
// framework's, and the system windows inside its controls).
bool TakesWholeCharacters(HWND window) {
  return window && !IsWindowUnicode(window) && SendMessageA(window, WM_UNICHAR, UNICODE_NOCHAR, 0);
}

}  // namespace

bool TakeMessage(MSG& msg) {
  return Wide() ? PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE) : PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE);
}

void DispatchTaken(MSG& msg) {
  TranslateMessage(&msg);
  if (!Wide()) {
    DispatchMessageA(&msg);
    return;
  }
  const bool character = msg.message == WM_CHAR || msg.message == WM_SYSCHAR;
  if (!character || msg.wParam < 0x80 || !TakesWholeCharacters(msg.hwnd)) {
    if (character) pendingHigh = 0;  // (a key's release comes between the halves)
    DispatchMessageW(&msg);
    return;
  }
  const auto unit = static_cast<wchar_t>(msg.wParam);
  unsigned code = unit;
  if (unit >= 0xD800 && unit < 0xDC00) {
    pendingHigh = unit;
    return;
  }
  if (unit >= 0xDC00 && unit < 0xE000) {
    if (!pendingHigh) return;  // half a character
    code = 0x10000 + ((pendingHigh - 0xD800u) << 10) + (unit - 0xDC00u);
  }
  pendingHigh = 0;
  SendMessageA(msg.hwnd, msg.message == WM_CHAR ? WM_UNICHAR : CM_SYSUNICHAR, code, msg.lParam);
}

}  // namespace Controls
