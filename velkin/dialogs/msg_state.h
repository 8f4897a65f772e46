#pragma once
/// \file
/// What a modal question puts back when it is answered.
#include "platform/vcl/forms/application.h"
#include "velkin/velkin_api.h"

/// Guards a modal message: made before it, it puts the long-operation window
/// away, remembers the focused and the foreground window and the pending I/O
/// error number, and disables the application's other top-level windows
/// (activeWindow stays enabled). Going, it enables them again, then gives
/// back the foreground, the focus and the error number.
class VELKIN_API SaveMsgState {
 public:
  explicit SaveMsgState(void* activeWindow);
  ~SaveMsgState();
  SaveMsgState(const SaveMsgState&) = delete;
  SaveMsgState& operator=(const SaveMsgState&) = delete;

 private:
  int errorN_;
  HWND focus_;
  HWND foreground_;
  Forms::TTaskWindowList* taskWindows_;
};
