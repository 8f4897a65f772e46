#pragma once
/// \file
/// Taking and dispatching the thread's messages, for the loops that pump them.
#include <windows.h>

#include "platform/vcl/core/vcl_api.h"

namespace Controls {

/// Takes the next message of the thread's queue (PeekMessage with
/// PM_REMOVE); false when there is none. In a UTF-8 program messages are
/// taken as UTF-16, so that a typed character comes whole.
VCL_API bool TakeMessage(MSG& msg);

/// Translates and dispatches a message TakeMessage took. In a UTF-8 program
/// a character for one of the framework's windows, which as an 8-bit window
/// would get it as one byte of the keyboard's code page, goes to it whole:
/// WM_CHAR as WM_UNICHAR, WM_SYSCHAR as CM_SYSUNICHAR (a character beyond the
/// basic plane once both its halves have come).
VCL_API void DispatchTaken(MSG& msg);

}  // namespace Controls
